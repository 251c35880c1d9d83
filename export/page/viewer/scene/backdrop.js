// What stands behind the scene: a colour or four, from the zenith over the horizon to the nadir, or a picture.
import {
  BackSide, Color, LinearSRGBColorSpace, Mesh, Scene, ShaderMaterial, SphereGeometry, SRGBColorSpace, Vector2,
} from 'three';

const bands = ['zenith', 'sky', 'ground', 'nadir'];
// A colour that isn't given is the nearest one's.
const neighbours = [[0, 1, 2, 3], [1, 0, 2, 3], [2, 3, 1, 0], [3, 2, 1, 0]];

const isColor = (value) => Array.isArray(value) && value.length === 3 && value.every(Number.isFinite);

// Four linear colours of the scene's "backdrop", or null where it gives none.
export function colorsOf(backdrop) {
  const given = backdrop?.scheme === 'color' ? bands.map(() => backdrop.color) : bands.map((name) => backdrop?.[name]);
  if (!given.some(isColor)) return null;
  return neighbours.map((order) => given[order.find((i) => isColor(given[i]))]);
}

// The sphere turns with the camera but never comes nearer; the depth buffer doesn't know it.
const vertexShader = `
  varying vec3 direction;
  void main() {
    direction = position;
    gl_Position = projectionMatrix * vec4(mat3(modelViewMatrix) * position, 1.0);
    gl_Position.z = 0.0;
  }`;
const gradientShader = `
  uniform vec3 bands[4];
  varying vec3 direction;
  #include <common>
  #include <dithering_pars_fragment>
  void main() {
    float height = asin(clamp(normalize(direction).y, -1.0, 1.0)) / 1.5707963;
    vec3 color = height >= 0.0 ? mix(bands[1], bands[0], height) : mix(bands[2], bands[3], -height);
    gl_FragColor = vec4(color, 1.0);
    #include <colorspace_fragment>
    #include <dithering_fragment>
  }`;
// A picture stands upright behind everything and fills the frame, wherever the camera looks.
const pictureShader = `
  uniform sampler2D picture;
  uniform vec2 corner, size, share;
  void main() {
    vec2 at = (gl_FragCoord.xy - corner) / size;
    at = (at - 0.5) * share + 0.5;
    gl_FragColor = texture2D(picture, vec2(at.x, 1.0 - at.y));
    #include <colorspace_fragment>
  }`;

export class Backdrop {
  // given: the scene's "backdrop", or nothing. picture(number): a promise of an image of the file.
  constructor(given, picture, onReady) {
    this.scene = new Scene();
    this.visible = true;
    const colors = colorsOf(given);
    if (colors) this.#show(this.#gradient(colors));
    if (!colors && Number.isInteger(given?.image))
      picture(given.image).then((texture) => {
        this.#show(this.#picture(texture));
        onReady();
      }, () => {});
    // Mirrors show colours; a picture that is always in front of the camera can't be seen in them.
    this.mirrored = colors !== null;
  }

  get shows() {
    return this.visible && this.mesh !== undefined;
  }

  #show(material) {
    this.mesh = new Mesh(new SphereGeometry(1, 32, 16), material);
    this.mesh.frustumCulled = false;
    this.scene.add(this.mesh);
  }

  #gradient(colors) {
    const values = colors.map((color) => new Color().setRGB(...color, LinearSRGBColorSpace));
    return new ShaderMaterial({
      uniforms: { bands: { value: values } }, vertexShader, fragmentShader: gradientShader,
      side: BackSide, depthTest: false, depthWrite: false, dithering: true,
    });
  }

  #picture(texture) {
    texture.flipY = false;
    texture.colorSpace = SRGBColorSpace;
    texture.needsUpdate = true;
    this.texture = texture;
    return new ShaderMaterial({
      uniforms: {
        picture: { value: texture }, corner: { value: new Vector2() }, size: { value: new Vector2(1, 1) },
        share: { value: new Vector2(1, 1) },
      },
      vertexShader, fragmentShader: pictureShader, side: BackSide, depthTest: false, depthWrite: false,
    });
  }

  // frame: x, y, width, height in pixels of the drawing buffer. Through the scene's camera a picture fills it exactly,
  // as in the old program; elsewhere it keeps its sides' proportion and is cut.
  fit(frame, exactly) {
    if (!this.texture) return;
    const { corner, size, share } = this.mesh.material.uniforms;
    corner.value.set(frame.x, frame.y);
    size.value.set(frame.width, frame.height);
    const aspect = this.texture.image.width / this.texture.image.height, wanted = frame.width / frame.height;
    share.value.set(exactly ? 1 : Math.min(1, wanted / aspect), exactly ? 1 : Math.min(1, aspect / wanted));
  }
}
