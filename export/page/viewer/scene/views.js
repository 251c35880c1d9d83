// Where the scene is seen from: through a camera of the file, from one of the usual sides, or from anywhere.
import { Box3, MathUtils, OrthographicCamera, PerspectiveCamera, Quaternion, Spherical, Vector3 } from 'three';
import { OrbitControls } from 'three/addons/controls/OrbitControls.js';

import { distanceFor } from './bounds.js';

const side = (id, label, x, y, z) => ({ id, label, direction: new Vector3(x, y, z).normalize() });
const threeQuarter = new Vector3().setFromSphericalCoords(1, MathUtils.degToRad(70), MathUtils.degToRad(30));

// From where a view looks to the middle. +Z is the side that an object turns to the one who models it.
export const sides = [
  { id: 'three-quarter', label: 'Three-quarter', direction: threeQuarter },
  side('front', 'Front', 0, 0, 1), side('back', 'Back', 0, 0, -1), side('left', 'Left', -1, 0, 0),
  side('right', 'Right', 1, 0, 0), side('top', 'Top', 0, 1, 1e-4),
];

const freeAngle = 35;    // degrees, of the picture's height
const margin = 1.12;     // round what is to be seen whole
const swing = 350;       // ms from one view to the next
const ease = (t) => t * t * (3 - 2 * t);

export class Views {
  // cameras: the file's, [{id, label, camera}]. bounds(): the box of what is shown now, in the drawn scene; whole: of
  // all that is ever shown. calm(): true where nothing should move by itself. onChange(): something has to be drawn anew.
  constructor(canvas, cameras, bounds, whole, calm, onChange) {
    this.cameras = cameras;
    this.bounds = bounds;
    this.middle = whole.isEmpty() ? new Vector3() : whole.getCenter(new Vector3());
    this.calm = calm;
    this.onChange = onChange;
    this.free = new PerspectiveCamera(freeAngle, 1, 1e-3, 1e4);
    this.scratch = { perspective: new PerspectiveCamera(), flat: new OrthographicCamera() };
    this.id = 'three-quarter';
    this.size = { width: 1, height: 1 };
    this.controls = new OrbitControls(this.free, canvas);
    this.controls.enableDamping = !calm();
    this.controls.dampingFactor = 0.12;
    this.controls.zoomToCursor = true;
    this.controls.minDistance = 1e-4;
    this.controls.maxDistance = 3e3;
    this.controls.addEventListener('start', () => { this.held = true; });
    this.controls.addEventListener('end', () => { this.held = false; });
    this.controls.addEventListener('change', () => this.#moved());
  }

  // The file's camera that is looked through, or undefined.
  get through() {
    return this.cameras.find(({ id }) => id === this.id)?.camera;
  }

  // A hand on the scene leaves the scene's camera where it stands.
  #moved() {
    if (this.held) {
      this.flight = undefined;
      this.#become('free');
    }
    this.onChange();
  }

  #become(id) {
    if (this.id === id) return;
    this.id = id;
    this.onView?.(id);
  }

  resize(width, height) {
    this.size = { width, height };
    this.onChange();
  }

  // The part of the canvas that is drawn to, in its own pixels from its lower left corner.
  frame() {
    const { width, height } = this.size, camera = this.through;
    if (!camera) return { x: 0, y: 0, width, height };
    const aspect = camera.isPerspectiveCamera ? camera.aspect : (camera.right - camera.left) / (camera.top - camera.bottom);
    const wide = Math.min(width, height * aspect), high = Math.min(height, width / aspect);
    return { x: (width - wide) / 2, y: (height - high) / 2, width: wide, height: high };
  }

  #halves() {
    const halfHeight = Math.tan(MathUtils.degToRad(this.free.fov / 2));
    return [halfHeight * (this.size.width / this.size.height), halfHeight];
  }

  // id: of a side or camera.
  show(id) {
    const wanted = sides.find((one) => one.id === id);
    if (!wanted && !this.cameras.some((one) => one.id === id)) return;
    this.flight = undefined;
    if (wanted) {
      if (this.through) this.#stand();
      this.#fly(this.bounds(), wanted.direction);
    }
    this.#become(id);
    this.onChange();
  }

  // Shows a box of the drawn scene whole, from where the camera looks now.
  frameBox(box) {
    if (this.through) this.#stand();
    this.#fly(box, this.free.position.clone().sub(this.controls.target).normalize());
    this.#become('free');
    this.onChange();
  }

  #fly(box, from) {
    const whole = box.isEmpty() ? new Box3(new Vector3(-1, -1, -1), new Vector3(1, 1, 1)) : box;
    const target = whole.getCenter(new Vector3());
    this.free.fov = freeAngle;
    const distance = Math.max(1e-4, margin * distanceFor(whole, from.clone().negate(), this.free.up, ...this.#halves()));
    const to = { target, position: from.clone().multiplyScalar(distance).add(target) };
    if (this.calm() || !this.started) {
      this.started = true;
      this.#put(to.position, to.target);
      return;
    }
    this.flight = { start: performance.now(), to, from: { target: this.controls.target.clone(), position: this.free.position.clone() } };
  }

  #put(position, target) {
    this.free.position.copy(position);
    this.controls.target.copy(target);
    this.controls.update();
  }

  // The free camera takes the place of the file's, and looks at what lies in the middle.
  #stand() {
    const camera = this.through, { position, direction } = this.#placeOf(camera);
    const ahead = this.middle.clone().sub(position).dot(direction);
    this.free.position.copy(position);
    this.controls.target.copy(direction).multiplyScalar(Math.max(ahead, 1)).add(position);
    const share = this.size.height / this.frame().height;
    this.free.fov = camera.isPerspectiveCamera
      ? MathUtils.clamp(2 * MathUtils.radToDeg(Math.atan(Math.tan(MathUtils.degToRad(camera.fov / 2)) * share)), 1, 120) : freeAngle;
    this.free.lookAt(this.controls.target);
  }

  #placeOf(camera) {
    camera.updateWorldMatrix(true, false);
    const position = new Vector3(), turn = new Quaternion(), scale = new Vector3();
    camera.matrixWorld.decompose(position, turn, scale);
    return { position, turn, scale: scale.y, direction: new Vector3(0, 0, -1).applyQuaternion(turn) };
  }

  // Turns about the middle: to the left and upwards, in degrees.
  turn(left, up) {
    this.#step((offset) => {
      const ball = new Spherical().setFromVector3(offset);
      ball.theta -= MathUtils.degToRad(left);
      ball.phi -= MathUtils.degToRad(up);
      ball.makeSafe();
      return offset.setFromSpherical(ball);
    });
  }

  // share below 1: nearer.
  zoom(share) {
    this.#step((offset) => offset.multiplyScalar(share));
  }

  // Moves the picture's middle by shares of its height.
  pan(right, up) {
    this.#step((offset) => {
      const step = offset.length() * 2 * this.#halves()[1];
      const x = new Vector3().setFromMatrixColumn(this.free.matrix, 0), y = new Vector3().setFromMatrixColumn(this.free.matrix, 1);
      this.controls.target.addScaledVector(x, right * step).addScaledVector(y, up * step);
      return offset;
    });
  }

  #step(change) {
    if (this.through) this.#stand();
    this.flight = undefined;
    this.free.updateMatrix();
    const offset = change(this.free.position.clone().sub(this.controls.target));
    this.#put(offset.add(this.controls.target), this.controls.target);
    this.#become('free');
    this.onChange();
  }

  // Once a frame, before it is drawn: the camera to draw with. True in `moving` where the next frame will differ.
  update(now) {
    const camera = this.through;
    if (camera) {
      if (!this.held) this.#stand();
      return { camera: this.#copyOf(camera), moving: false };
    }
    let moving = false;
    if (this.flight) {
      const { start, from, to } = this.flight, share = Math.min(1, (now - start) / swing), t = ease(share);
      // Round the middle, not through it: direction and distance are mixed apart.
      const target = from.target.clone().lerp(to.target, t);
      const a = from.position.clone().sub(from.target), b = to.position.clone().sub(to.target);
      const length = Math.exp(MathUtils.lerp(Math.log(a.length()), Math.log(b.length()), t));
      const turn = new Quaternion().setFromUnitVectors(a.clone().normalize(), b.clone().normalize());
      const direction = a.normalize().applyQuaternion(new Quaternion().slerp(turn, t));
      this.#put(direction.multiplyScalar(length).add(target), target);
      if (share === 1) this.flight = undefined;
      moving = true;
    } else if (!this.held || this.controls.enableDamping) {
      moving = this.controls.update();
    }
    this.free.aspect = this.size.width / this.size.height;
    const distance = this.free.position.distanceTo(this.controls.target);
    this.free.near = Math.min(1e-3, distance / 100);
    this.free.updateProjectionMatrix();
    this.free.updateMatrixWorld();
    return { camera: this.free, moving };
  }

  #copyOf(camera) {
    const { position, turn, scale } = this.#placeOf(camera);
    const copy = camera.isPerspectiveCamera ? this.scratch.perspective : this.scratch.flat;
    if (camera.isPerspectiveCamera) {
      copy.fov = camera.fov;
      copy.aspect = camera.aspect;
      copy.near = 1e-3;
      copy.far = 1e4;
    } else {
      for (const edge of ['left', 'right', 'top', 'bottom']) copy[edge] = camera[edge] * scale;
      copy.near = 0;
      copy.far = 1e4;
    }
    copy.position.copy(position);
    copy.quaternion.copy(turn);
    copy.updateProjectionMatrix();
    copy.updateMatrixWorld();
    return copy;
  }
}
