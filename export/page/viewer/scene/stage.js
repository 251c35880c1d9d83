// The canvas: what is drawn, in which order, and when. Nothing is drawn unless something asked for it.
import {
  Box3, Group, MeshBasicMaterial, PMREMGenerator, Scene, Sphere, SRGBColorSpace, Vector3, WebGLRenderer, WebGLRenderTarget,
} from 'three';
import { RoomEnvironment } from 'three/addons/environments/RoomEnvironment.js';

// Scenes are 10^-6 to 10^8 units wide. Drawn, each is a ball of this radius round the origin, so that the shader's
// numbers, the depths and the steps of the camera suit it.
const drawnRadius = 100;
const mirrorSize = 128;
const sharpest = 2; // pixels of the drawing buffer a CSS pixel

export class Stage {
  // Throws where the browser draws no WebGL 2.
  constructor(canvas, onFrame) {
    this.canvas = canvas;
    this.onFrame = onFrame;
    this.renderer = new WebGLRenderer({ canvas, antialias: true, alpha: true, logarithmicDepthBuffer: true });
    this.renderer.outputColorSpace = SRGBColorSpace;
    this.renderer.autoClear = false;
    this.renderer.setClearColor(0x000000, 0);
    this.scene = new Scene();
    this.root = new Group();
    this.scene.add(this.root);
    this.wires = new MeshBasicMaterial({ wireframe: true });
    this.scale = 1;
    canvas.addEventListener('webglcontextlost', (event) => event.preventDefault());
    canvas.addEventListener('webglcontextrestored', () => this.request());
  }

  // thing: the file's tree. box: round it over the whole clip, in the file's lengths.
  put(thing, box) {
    const sphere = box.isEmpty() ? new Sphere(new Vector3(), 1) : box.getBoundingSphere(new Sphere());
    const radius = sphere.radius > 0 ? sphere.radius : 1;
    this.scale = drawnRadius / radius;
    this.root.scale.setScalar(this.scale);
    this.root.position.copy(sphere.center).multiplyScalar(-this.scale);
    this.root.add(thing);
    this.root.updateMatrixWorld(true);
    this.whole = box.isEmpty() ? new Box3() : box.clone().applyMatrix4(this.root.matrixWorld);
  }

  request() {
    if (this.asked) return;
    this.asked = true;
    requestAnimationFrame((now) => {
      this.asked = false;
      this.onFrame(now);
    });
  }

  resize(width, height, ratio) {
    this.renderer.setPixelRatio(Math.min(sharpest, ratio));
    this.renderer.setSize(width, height, false);
    this.request();
  }

  // What mirrors show: the backdrop's colours, or a neutral room. Made when first needed.
  mirror(backdrop) {
    const kind = backdrop === null ? 'none' : backdrop === undefined ? 'room' : 'backdrop';
    this.mirrors ??= {};
    if (kind !== 'none' && !this.mirrors[kind]) {
      const maker = new PMREMGenerator(this.renderer);
      const source = kind === 'room' ? new RoomEnvironment() : backdrop.scene;
      this.mirrors[kind] = maker.fromScene(source, kind === 'room' ? 0.04 : 0, 0.1, 100, { size: mirrorSize }).texture;
      maker.dispose();
    }
    this.scene.environment = kind === 'none' ? null : this.mirrors[kind];
    this.scene.environmentIntensity = kind === 'room' ? 0.6 : 1;
  }

  // frame: in CSS pixels from the lower left corner.
  draw(camera, frame, backdrop, wires) {
    const { renderer } = this;
    renderer.setRenderTarget(null);
    renderer.setScissorTest(false);
    renderer.clear();
    renderer.setScissorTest(true);
    renderer.setScissor(frame.x, frame.y, frame.width, frame.height);
    renderer.setViewport(frame.x, frame.y, frame.width, frame.height);
    if (backdrop && !wires) renderer.render(backdrop.scene, camera);
    this.scene.overrideMaterial = wires ? this.wires : null;
    renderer.render(this.scene, camera);
  }

  // The mean of what is drawn, 0 black to 1 white, as a screen shows it; 1 where nothing is.
  brightness(camera, backdrop) {
    const width = 64, height = 48, { renderer } = this;
    const target = new WebGLRenderTarget(width, height);
    const pixels = new Uint8Array(4 * width * height);
    renderer.setRenderTarget(target);
    renderer.setScissorTest(false);
    renderer.clear();
    if (backdrop) renderer.render(backdrop.scene, camera);
    renderer.render(this.scene, camera);
    renderer.readRenderTargetPixels(target, 0, 0, width, height, pixels);
    renderer.setRenderTarget(null);
    target.dispose();
    let sum = 0, covered = 0;
    for (let i = 0; i < pixels.length; i += 4) {
      if (pixels[i + 3] === 0) continue;
      const linear = (0.2126 * pixels[i] + 0.7152 * pixels[i + 1] + 0.0722 * pixels[i + 2]) / 255;
      sum += linear <= 0.0031308 ? 12.92 * linear : 1.055 * linear ** (1 / 2.4) - 0.055;
      ++covered;
    }
    return covered === 0 ? 1 : sum / covered;
  }
}
