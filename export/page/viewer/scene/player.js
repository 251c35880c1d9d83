// The scene at a time: nodes by three.js's mixer, and what KHR_animation_pointer moves by our own few lines, which
// address things by their number. (A name that a surface of the time bears may be any, and be borne twice.)
import { AnimationMixer, MathUtils } from 'three';

import { valueAt } from '../data/curve.js';

const color = (name) => (thing, v) => thing[name]?.setRGB(v[0], v[1], v[2]);
const number = (name) => (thing, v) => { thing[name] = v[0]; };

function setBaseColor(material, v) {
  material.color?.setRGB(v[0], v[1], v[2]);
  material.opacity = v[3];
}

// Cones keep both angles, since three.js has the inner one as a share of the outer.
function setCone(light, inner, outer) {
  const angles = light.userData.cone ??= { inner: light.angle * (1 - light.penumbra), outer: light.angle };
  angles.inner = inner ?? angles.inner;
  angles.outer = outer ?? angles.outer;
  light.angle = MathUtils.clamp(angles.outer, 1e-4, Math.PI / 2);
  light.penumbra = MathUtils.clamp(1 - angles.inner / light.angle, 0, 1);
}

function setFov(camera, v) {
  camera.fov = MathUtils.clamp(v[0] * MathUtils.RAD2DEG, 1e-3, 179);
}

const setters = {
  material: {
    'pbrMetallicRoughness/baseColorFactor': setBaseColor,
    'pbrMetallicRoughness/metallicFactor': number('metalness'),
    'pbrMetallicRoughness/roughnessFactor': number('roughness'),
    emissiveFactor: color('emissive'),
    'extensions/KHR_materials_emissive_strength/emissiveStrength': number('emissiveIntensity'),
  },
  light: {
    color: color('color'),
    intensity: number('intensity'),
    range: number('distance'),
    'spot/innerConeAngle': (light, v) => setCone(light, v[0], undefined),
    'spot/outerConeAngle': (light, v) => setCone(light, undefined, v[0]),
  },
  camera: {
    'perspective/yfov': setFov,
  },
};

export class Player {
  constructor(loaded) {
    this.mixer = new AnimationMixer(loaded.root);
    this.actions = loaded.clips.map((clip) => this.mixer.clipAction(clip).play());
    this.duration = Math.max(0, ...loaded.clips.map((clip) => clip.duration));
    const things = { material: loaded.materials, light: loaded.lights, camera: loaded.cameras };
    this.pointers = loaded.pointers.flatMap(({ kind, number: index, property, curve }) => {
      const set = setters[kind][property];
      if (!set || curve.times.length === 0) return [];
      this.duration = Math.max(this.duration, curve.times[curve.times.length - 1]);
      return [{ set, curve, things: [...(things[kind].get(index) ?? [])], value: new Array(curve.size).fill(0) }];
    });
  }

  // time: seconds of the clip.
  show(time) {
    // Set, not advanced: a mixer that runs past an end would wrap the last frame onto the first.
    for (const action of this.actions) action.time = Math.min(time, action.getClip().duration);
    this.mixer.update(0);
    for (const { set, curve, things, value } of this.pointers) {
      valueAt(curve, time, value);
      for (const thing of things) set(thing, value);
    }
  }
}
