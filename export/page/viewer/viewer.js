// The viewer: puts the parts together. Also used where the file comes from elsewhere than the page itself.
import { Box3, Sphere, Vector3 } from 'three';

import { isDome, outlineOf } from './data/outline.js';
import { counted } from './data/report.js';
import { TimeLine } from './data/time_line.js';
import { Backdrop } from './scene/backdrop.js';
import { boundsOf } from './scene/bounds.js';
import { FileLights, NeutralLights } from './scene/lights.js';
import { loadGlb } from './scene/load.js';
import { Player } from './scene/player.js';
import { useGltfFormulae } from './scene/shading.js';
import { Stage } from './scene/stage.js';
import { sides, Views } from './scene/views.js';
import { setUpKeys } from './ui/keys.js';
import { ObjectList } from './ui/object_list.js';
import { Transport } from './ui/transport.js';

useGltfFormulae();

const black = 0.02;  // a first picture darker than this shows nothing
const samples = 5;   // of the clip, for the room that its movements take

const calm = () => matchMedia('(prefers-reduced-motion: reduce)').matches;

class Viewer {
  constructor(part, loaded) {
    this.part = part;
    this.loaded = loaded;
    this.stage = new Stage(part('canvas'), (now) => this.#frame(now));
    this.player = new Player(loaded);
    this.line = new TimeLine(loaded.extras.timeLine, this.player.duration);
    this.player.show(this.line.start);
    this.domes = [...loaded.nodes].filter(([number]) => isDome(loaded.json, number)).map(([, thing]) => thing);
    const box = this.#reach();
    const lights = [...loaded.lights.values()].flatMap((set) => [...set]);
    this.fileLights = new FileLights(lights, loaded.extras.ambient, box.isEmpty() ? new Sphere(new Vector3(), 1)
      : box.getBoundingSphere(new Sphere()), this.stage.renderer.capabilities.maxFragmentUniforms);
    this.neutralLights = new NeutralLights();
    this.stage.put(loaded.root, box);
    this.stage.scene.add(this.fileLights.group, this.neutralLights.group);
    this.backdrop = new Backdrop(loaded.extras.backdrop, loaded.picture, () => this.stage.request());
    this.wires = false;
    this.#makeViews();
    this.#makeTransport();
    this.#chooseLight();
    this.#makeSwitches();
    this.#makeList();
    this.#watchSize();
  }

  #isDome = (thing) => this.domes.includes(thing);

  // The box round all that is drawn, at a few times of the clip, in the file's lengths.
  #reach() {
    const box = new Box3(), { line } = this, times = line.moves ? samples : 1;
    for (let i = times - 1; i >= 0; --i) {
      this.player.show(line.start + ((line.end - line.start) * i) / samples);
      box.union(boundsOf(this.loaded.root, this.#isDome));
    }
    return box;
  }

  // For those who don't see the picture change.
  #say = (text) => { this.part('live').textContent = text; };

  // ---- where from ----

  #makeViews() {
    const { json } = this.loaded;
    const cameras = [...this.loaded.cameras].flatMap(([number, set]) => [...set].map((camera, i) => {
      const name = json.cameras[number].name || `camera ${number + 1}`;
      return { id: `camera-${number}-${i}`, label: `Camera: ${name}`, camera, active: json.cameras[number].extras?.active };
    })).sort((a, b) => Number(Boolean(b.active)) - Number(Boolean(a.active)));
    const bounds = () => boundsOf(this.stage.root, this.#isDome);
    const { part, stage } = this, select = part('view');
    this.views = new Views(part('canvas'), cameras, bounds, stage.whole, calm, () => stage.request());
    const options = [...cameras, ...sides, { id: 'free', label: 'Free' }];
    select.replaceChildren(...options.map(({ id, label }) => new Option(label, id)));
    const free = select.lastElementChild;
    this.views.onView = (id) => {
      free.hidden = id !== 'free';
      select.value = id;
      this.#say(`Seen from: ${options.find((one) => one.id === id).label}`);
    };
    select.addEventListener('change', () => this.views.show(select.value));
    this.home = cameras[0]?.id ?? 'three-quarter';
    part('fit').addEventListener('click', () => this.#fit());
    part('zoom-in').addEventListener('click', () => this.views.zoom(1 / 1.25));
    part('zoom-out').addEventListener('click', () => this.views.zoom(1.25));
    for (const [name, act] of [['turn', (a, b) => this.views.turn(a, b)], ['move', (a, b) => this.views.pan(a, b)]])
      for (const button of part('panel').querySelectorAll(`[data-${name}]`))
        button.addEventListener('click', () => act(...button.dataset[name].split(',').map(Number)));
    free.hidden = true;
  }

  #fit() {
    this.views.frameBox(boundsOf(this.stage.root, this.#isDome));
    this.#say('Everything is shown');
  }

  #nextCamera() {
    const { cameras, id } = this.views;
    const at = cameras.findIndex((one) => one.id === id);
    this.views.show(at + 1 < cameras.length ? cameras[at + 1].id : at < 0 && cameras.length > 0 ? cameras[0].id : 'three-quarter');
  }

  // ---- time ----

  #makeTransport() {
    this.transport = new Transport(this.part, this.line, { onChange: () => this.stage.request(), say: this.#say });
  }

  // ---- light ----

  // The file's own lights, unless it has none, or nothing can be seen by them.
  #chooseLight() {
    const { total, shown, ambient } = this.fileLights;
    let why = '';
    this.#light('file');
    this.views.show(this.home);
    if (total === 0) why = 'This file has no lamps';
    else if (this.#firstPictureIsBlack()) why = 'By its own lamps this picture is black';
    this.part('light-hint').textContent = total === 0
      ? `The file has no lamps${ambient ? ', only ambient light' : ''}.`
      : shown < total ? `The ${shown} strongest of the file's ${total} lamps are shown.` : `The file has ${counted(total, 'lamp')}.`;
    if (why) {
      this.#light('neutral');
      if (!this.stage.whole.isEmpty()) this.#note(`${why}; a neutral one is on.`, 'Switch it off', () => this.#light('file'));
    }
  }

  #note(text, action, act) {
    const { part } = this;
    part('notice-text').textContent = text;
    part('notice-switch').textContent = action;
    part('notice-switch').addEventListener('click', () => {
      act();
      part('canvas').focus();
    });
    part('notice-close').addEventListener('click', () => {
      part('notice').hidden = true;
      part('canvas').focus();
    });
    part('notice').hidden = false;
  }

  #firstPictureIsBlack() {
    const { camera } = this.#prepare(0);
    return this.stage.brightness(camera, this.backdrop.shows ? this.backdrop : null) < black;
  }

  #light(kind) {
    this.neutral = kind === 'neutral';
    this.fileLights.group.visible = !this.neutral;
    this.neutralLights.group.visible = this.neutral;
    this.stage.mirror(this.neutral ? undefined : this.backdrop.mirrored && this.backdrop.visible ? this.backdrop : null);
    this.part(`light-${kind}`).checked = true;
    if (!this.neutral) this.part('notice').hidden = true;
    this.stage.request();
  }

  // ---- switches ----

  #makeSwitches() {
    const { part } = this, has = this.backdrop.mesh !== undefined || this.loaded.extras.backdrop?.image !== undefined || this.domes.length > 0;
    part('backdrop-row').hidden = !has;
    for (const kind of ['file', 'neutral']) part(`light-${kind}`).addEventListener('change', () => this.#light(kind));
    part('backdrop').addEventListener('change', () => {
      this.backdrop.visible = part('backdrop').checked;
      for (const dome of this.domes) dome.visible = part('backdrop').checked;
      this.#light(this.neutral ? 'neutral' : 'file');
    });
    part('wires').addEventListener('change', () => {
      this.wires = part('wires').checked;
      for (const dome of this.domes) dome.visible = !this.wires && part('backdrop').checked;
      this.stage.wires.color.set(getComputedStyle(part('canvas')).color);
      this.stage.request();
    });
    const flip = (name, words) => () => {
      if (part(`${name}-row`, true)?.hidden) return;
      part(name).click();
      this.#say(`${words} ${part(name).checked ? 'on' : 'off'}`);
    };
    setUpKeys(part('canvas'), {
      turn: (left, up) => this.views.turn(left, up), pan: (right, up) => this.views.pan(right, up),
      zoom: (share) => this.views.zoom(share), fit: () => this.#fit(), camera: () => this.#nextCamera(),
      toggle: () => this.transport.toggle(), step: (frames) => this.transport.step(frames),
      light: () => {
        this.#light(this.neutral ? 'file' : 'neutral');
        this.#say(this.neutral ? 'A neutral lamp at the camera' : 'Light as in the file');
      },
      wires: flip('wires', 'Wireframe'), backdrop: has ? flip('backdrop', 'Backdrop') : () => {},
    });
  }

  #makeList() {
    const { nodes } = this.loaded;
    this.list = new ObjectList(this.part, outlineOf(this.loaded.json), {
      isShown: ({ node }) => nodes.get(node)?.visible ?? true,
      onShow: ({ node, name }, visible) => {
        const thing = nodes.get(node);
        if (thing) thing.visible = visible;
        this.#say(`${name} is ${visible ? 'shown' : 'hidden'}`);
        this.stage.request();
      },
      onLook: (item) => this.#lookAt(item),
    });
  }

  #lookAt({ node, name, kind }) {
    const thing = this.loaded.nodes.get(node);
    if (!thing) return;
    const number = this.loaded.json.nodes[node].camera;
    if (kind === 'camera' && number !== undefined) {
      this.views.show(`camera-${number}-0`);
      return;
    }
    const box = boundsOf(thing, this.#isDome);
    if (box.isEmpty()) box.setFromCenterAndSize(thing.getWorldPosition(new Vector3()), new Vector3(5, 5, 5));
    this.views.frameBox(box);
    this.#say(`Looking at ${name}`);
  }

  // ---- drawing ----

  #watchSize() {
    const stage = this.part('stage');
    const measure = () => {
      const { clientWidth: width, clientHeight: height } = stage;
      if (width === 0 || height === 0) return;
      this.stage.resize(width, height, window.devicePixelRatio || 1);
      this.views.resize(width, height);
      this.#frame(performance.now()); // at once: a canvas that changed its size is empty
    };
    new ResizeObserver(measure).observe(stage);
    measure();
    if (!this.views.touched) this.views.show(this.home);
  }

  #prepare(now) {
    this.player.show(this.transport.time);
    this.stage.root.updateMatrixWorld(true);
    this.fileLights.update(this.stage.scale);
    const { camera, moving } = this.views.update(now);
    this.neutralLights.update(camera);
    return { camera, moving };
  }

  #frame(now) {
    this.transport.advance(now);
    const { camera, moving } = this.#prepare(now);
    const frame = this.views.frame();
    const ratio = this.stage.renderer.getPixelRatio();
    this.backdrop.fit({ x: frame.x * ratio, y: frame.y * ratio, width: frame.width * ratio, height: frame.height * ratio },
      this.views.through !== undefined);
    this.stage.draw(camera, frame, this.backdrop.shows ? this.backdrop : null, this.wires);
    if (moving || this.transport.playing) this.stage.request();
  }
}

// part: see ui/parts.js, of an element that holds viewer.html. bytes: of a GLB. A line for the user where nothing is
// to be seen; throws where it can't be shown.
export async function showScene(part, bytes) {
  const viewer = new Viewer(part, await loadGlb(bytes));
  if (!calm()) viewer.transport.toggle();
  return viewer.stage.whole.isEmpty() ? 'There is nothing to draw in this scene.' : '';
}
