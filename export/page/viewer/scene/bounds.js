// How large what is drawn is, and where.
import { Box3, Vector3 } from 'three';

const finiteBox = (box) => [...box.min, ...box.max].every(Number.isFinite);

// The box round the meshes below `thing`, in the world. Hidden ones don't count unless all are; nor do those whose
// numbers aren't finite. An empty box where nothing is left.
export function boundsOf(thing, without = () => false) {
  thing.updateWorldMatrix(true, true);
  const all = new Box3(), shown = new Box3(), own = new Box3();
  const stack = [{ at: thing, visible: true }];
  while (stack.length > 0) {
    const { at, visible } = stack.pop();
    if (without(at)) continue;
    const seen = visible && at.visible;
    if (at.isMesh) {
      if (!at.geometry.boundingBox) at.geometry.computeBoundingBox();
      own.copy(at.geometry.boundingBox).applyMatrix4(at.matrixWorld);
      if (!own.isEmpty() && finiteBox(own)) {
        all.union(own);
        if (seen) shown.union(own);
      }
    }
    for (const child of at.children) stack.push({ at: child, visible: seen });
  }
  return shown.isEmpty() ? all : shown;
}

// How far from the middle of `box` a camera has to stand that looks along `direction` (a unit vector) with `up`, so
// that all eight corners are within its picture. halfWidth, halfHeight: of the picture, at distance 1.
export function distanceFor(box, direction, up, halfWidth, halfHeight) {
  const middle = box.getCenter(new Vector3());
  const right = new Vector3().crossVectors(direction, up).normalize();
  const above = new Vector3().crossVectors(right, direction);
  const corner = new Vector3();
  let distance = 0;
  for (let i = 0; i < 8; ++i) {
    corner.set(i & 1 ? box.max.x : box.min.x, i & 2 ? box.max.y : box.min.y, i & 4 ? box.max.z : box.min.z).sub(middle);
    const nearer = -corner.dot(direction);
    distance = Math.max(distance, nearer + Math.abs(corner.dot(right)) / halfWidth,
      nearer + Math.abs(corner.dot(above)) / halfHeight);
  }
  return distance;
}
