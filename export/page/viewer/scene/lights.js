// The file's lights, and the neutral ones for a file that has none.
import {
  AmbientLight, Color, DirectionalLight, Group, HemisphereLight, LinearSRGBColorSpace, PointLight, Quaternion, SpotLight,
  Vector3,
} from 'three';

// All lights stand in every shader. Graphics cards have room for a few dozen, those of old telephones for a dozen.
const mostLights = 64, uniformsOfLight = 7, uniformsOfRest = 128;
const layerOfNothing = 31;

function isShown(thing) {
  for (let at = thing; at; at = at.parent) if (!at.visible) return false;
  return true;
}

// What comes of a lamp in the middle of the scene, as good as that is known.
function strengthOf(light, sphere) {
  const brightest = light.intensity * Math.max(light.color.r, light.color.g, light.color.b);
  if (light.isDirectionalLight) return brightest;
  const distance = light.getWorldPosition(new Vector3()).distanceTo(sphere.center);
  return brightest / Math.max(distance, sphere.radius / 10) ** 2;
}

function copyOf(light) {
  const copy = light.isDirectionalLight ? new DirectionalLight() : light.isSpotLight ? new SpotLight() : new PointLight();
  copy.castShadow = false;
  return copy;
}

const position = new Vector3(), turn = new Quaternion();

// Copies of the file's lights in the space where things are drawn. The file's own stay where its animation moves them,
// on a layer that no camera sees.
export class FileLights {
  // lights: three.js's, in the file's tree. sphere: round the scene, in the file's lengths. ambient: the scene's
  // "ambient", or nothing.
  constructor(lights, ambient, sphere, maxUniforms) {
    this.group = new Group();
    this.total = lights.length;
    for (const light of lights) light.layers.set(layerOfNothing);
    const most = Math.max(4, Math.min(mostLights, Math.floor((maxUniforms - uniformsOfRest) / uniformsOfLight)));
    this.pairs = lights.map((light) => ({ light, strength: strengthOf(light, sphere) }))
      .sort((a, b) => b.strength - a.strength).slice(0, most).map(({ light }) => ({ light, copy: copyOf(light) }));
    for (const { copy } of this.pairs) {
      this.group.add(copy);
      if (copy.target) this.group.add(copy.target);
    }
    // Where the materials hold the ambient light already, it isn't added again. A matt white surface sends 1/pi of
    // what falls on it.
    this.ambient = Array.isArray(ambient?.color) && ambient.intensity > 0 && !ambient.inMaterials;
    if (this.ambient)
      this.group.add(new AmbientLight(new Color().setRGB(...ambient.color, LinearSRGBColorSpace), ambient.intensity * Math.PI));
  }

  get shown() {
    return this.pairs.length;
  }

  // Once a frame. scale: lengths of the drawn scene over those of the file.
  update(scale) {
    for (const { light, copy } of this.pairs) {
      copy.visible = isShown(light);
      copy.color.copy(light.color);
      light.matrixWorld.decompose(position, turn, new Vector3());
      copy.position.copy(position);
      copy.intensity = light.intensity;
      if (!light.isDirectionalLight) {
        copy.intensity *= scale * scale;
        copy.distance = light.distance * scale;
        copy.decay = 2;
      }
      if (light.isSpotLight) {
        copy.angle = light.angle;
        copy.penumbra = light.penumbra;
      }
      if (copy.target) copy.target.position.set(0, 0, -1).applyQuaternion(turn).add(position);
    }
  }
}

// A lamp above the camera's left shoulder, and a soft sky.
export class NeutralLights {
  constructor() {
    this.group = new Group();
    this.lamp = new DirectionalLight(0xffffff, 0.75 * Math.PI);
    this.group.add(this.lamp, this.lamp.target, new HemisphereLight(0xfbfcff, 0xa9a196, 0.4 * Math.PI));
  }

  update(camera) {
    this.lamp.position.set(-0.5, 0.7, 1).applyQuaternion(camera.quaternion);
  }
}
