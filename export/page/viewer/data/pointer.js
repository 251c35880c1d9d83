// KHR_animation_pointer: which property of which thing a channel of an animation moves.

const patterns = [
  ['material', /^\/materials\/(\d+)\/(.+)$/],
  ['light', /^\/extensions\/KHR_lights_punctual\/lights\/(\d+)\/(.+)$/],
  ['camera', /^\/cameras\/(\d+)\/(.+)$/],
];

// {kind, number, property} of "/cameras/0/perspective/yfov", or null for what the page doesn't play.
export function targetOf(pointer) {
  for (const [kind, pattern] of patterns) {
    const match = pattern.exec(pointer ?? '');
    if (match) return { kind, number: Number(match[1]), property: match[2] };
  }
  return null;
}

// The channels of all animations that move by a pointer: {kind, number, property, sampler}.
export function pointerChannels(json) {
  return (json.animations ?? []).flatMap((animation) => animation.channels.flatMap((channel) => {
    const target = targetOf(channel.target?.extensions?.KHR_animation_pointer?.pointer);
    return target ? [{ ...target, sampler: animation.samplers[channel.sampler] }] : [];
  }));
}
