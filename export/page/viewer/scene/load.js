// A GLB to three.js's things, and the way back from them to the numbers of the file.
import { TextureLoader } from 'three';
import { GLTFLoader } from 'three/addons/loaders/GLTFLoader.js';

import { pointerChannels } from '../data/pointer.js';

function bufferOf(bytes) {
  const whole = bytes.byteOffset === 0 && bytes.byteLength === bytes.buffer.byteLength;
  return whole ? bytes.buffer : bytes.slice().buffer;
}

// The light or camera that hangs at a node: the node itself, or a child without a number of its own.
function attached(node, numbers, is) {
  return node[is] ? node : node.children.find((child) => child[is] && !numbers.has(child));
}

function addTo(map, key, value) {
  if (!map.has(key)) map.set(key, new Set());
  map.get(key).add(value);
}

// Maps from the file's numbers: nodes to one thing, materials, lights and cameras to a set of them, since a material
// is copied where a mesh needs a variant of it, and a light where two nodes have it.
function numbered(root, parser) {
  const { json, associations } = parser;
  const found = { nodes: new Map(), materials: new Map(), lights: new Map(), cameras: new Map(), numbers: new Map() };
  root.traverse((thing) => {
    const number = associations.get(thing)?.nodes;
    if (number !== undefined && !found.nodes.has(number)) {
      found.nodes.set(number, thing);
      found.numbers.set(thing, number);
    }
    for (const material of [thing.material ?? []].flat()) {
      const materialNumber = associations.get(material)?.materials;
      if (materialNumber !== undefined) addTo(found.materials, materialNumber, material);
    }
  });
  for (const [number, thing] of found.nodes) {
    const node = json.nodes[number];
    const light = node.extensions?.KHR_lights_punctual?.light;
    const lightThing = light !== undefined && attached(thing, found.numbers, 'isLight');
    if (lightThing) addTo(found.lights, light, lightThing);
    const camera = node.camera !== undefined && attached(thing, found.numbers, 'isCamera');
    if (camera) addTo(found.cameras, node.camera, camera);
  }
  return found;
}

// Everything that the page shows of a file. Throws where the bytes aren't a GLB.
export async function loadGlb(bytes) {
  const loader = new GLTFLoader();
  // The usual loader of pictures fetches, which the page forbids itself; an image element doesn't.
  loader.register((parser) => {
    parser.textureLoader = new TextureLoader(parser.options.manager);
    return { name: 'pictures-by-element' };
  });
  const gltf = await loader.parseAsync(bufferOf(bytes), '');
  const { parser } = gltf;
  const pointers = await Promise.all(pointerChannels(parser.json).map(async (channel) => {
    const [input, output] = await Promise.all([
      parser.getDependency('accessor', channel.sampler.input), parser.getDependency('accessor', channel.sampler.output)]);
    const keys = input.count * (channel.sampler.interpolation === 'CUBICSPLINE' ? 3 : 1);
    return { ...channel, curve: {
      times: input.array, values: output.array, size: Math.floor(output.array.length / Math.max(1, keys)),
      interpolation: channel.sampler.interpolation ?? 'LINEAR' } };
  }));
  return {
    root: gltf.scene, json: parser.json, clips: gltf.animations, pointers,
    extras: parser.json.scenes?.[parser.json.scene ?? 0]?.extras ?? {},
    picture: (number) => parser.loadImageSource(number, parser.textureLoader),
    ...numbered(gltf.scene, parser),
  };
}
