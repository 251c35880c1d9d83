// A glTF animation sampler read at a time. Numbers only: a quaternion's parts come out unnormalised.

// times ascend, in seconds. values: `size` numbers a key, three times that (in-tangent, value, out-tangent) of a
// CUBICSPLINE. Writes `size` numbers to `out`; before the first and after the last key the value stays.
export function valueAt({ times, values, size, interpolation }, time, out) {
  const cubic = interpolation === 'CUBICSPLINE';
  const stride = cubic ? 3 * size : size;
  const shift = cubic ? size : 0;
  let low = 0, high = times.length - 1;
  while (low < high) {
    const middle = (low + high + 1) >> 1;
    if (times[middle] <= time) low = middle;
    else high = middle - 1;
  }
  const from = low * stride + shift;
  const span = low + 1 < times.length ? times[low + 1] - times[low] : 0;
  if (!(time > times[low]) || !(span > 0) || interpolation === 'STEP') {
    for (let i = 0; i < size; ++i) out[i] = values[from + i];
    return out;
  }
  const t = (time - times[low]) / span, to = from + stride;
  if (!cubic) {
    for (let i = 0; i < size; ++i) out[i] = values[from + i] * (1 - t) + values[to + i] * t;
    return out;
  }
  // Hermite's basis; tangents are a second's worth.
  const t2 = t * t, t3 = t2 * t;
  for (let i = 0; i < size; ++i)
    out[i] = (2 * t3 - 3 * t2 + 1) * values[from + i] + (t3 - 2 * t2 + t) * span * values[from + size + i] +
      (3 * t2 - 2 * t3) * values[to + i] + (t3 - t2) * span * values[to - size + i];
  return out;
}
