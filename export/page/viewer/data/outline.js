// The list of what is in a scene, as people think of it: from the nodes of a glTF file to a tree of named things.

// A rotation point, or a shear that needs two turns, makes the exporter write a node of its own below the thing's.
const helpers = [' pivot', ' shear'];

function kindOf(node) {
  if (node.extensions?.KHR_lights_punctual) return 'light';
  if (node.camera !== undefined) return 'camera';
  return node.mesh !== undefined ? 'object' : 'group';
}

function isHelper(node, parent) {
  return parent.mesh === undefined && (parent.children ?? []).length === 1 &&
    helpers.some((ending) => node.name === (parent.name ?? '') + ending);
}

// The dome that shows the backdrop, where the file has one: a mesh that nothing lights, at the top of the tree.
export function isDome(json, number) {
  const node = json.nodes[number];
  const material = json.materials?.[json.meshes?.[node?.mesh]?.primitives[0]?.material];
  return node?.name === 'backdrop' && material?.extensions?.KHR_materials_unlit !== undefined;
}

// A thing of several surfaces is a node with nothing but their meshes below it.
function isObject(item) {
  return item.children.length > 0 && item.children.every((child) => child.kind === 'object' && child.children.length === 0);
}

// Items {node, name, kind, children, parent}: node is a number of the file, kind one of object, group, light, camera.
export function outlineOf(json) {
  const nodes = json.nodes ?? [];
  const top = { children: [] };
  const seen = new Set(), items = [];
  const queue = (json.scenes?.[json.scene ?? 0]?.nodes ?? [])
    .filter((number) => !isDome(json, number))
    .map((number) => ({ number, item: top, above: null }));
  for (let at = 0; at < queue.length; ++at) {
    const { number, item, above } = queue[at];
    const node = nodes[number];
    if (!node || seen.has(number)) continue;
    seen.add(number);
    let own = item;
    if (above && isHelper(node, above)) {
      if (node.mesh !== undefined) own.kind = 'object';
    } else {
      own = { node: number, name: node.name || `node ${number}`, kind: kindOf(node), children: [], parent: item };
      item.children.push(own);
    }
    for (const child of node.children ?? []) queue.push({ number: child, item: own, above: node });
    if (own !== item) items.push(own);
  }
  for (const item of items.filter(isObject)) item.kind = 'object';
  return top.children;
}

// Items whose names hold the words, in the order of the tree, at most `limit` of them.
export function matching(items, words, limit) {
  const wanted = words.trim().toLowerCase();
  const found = [];
  const stack = [...items].reverse();
  while (stack.length > 0 && found.length < limit) {
    const item = stack.pop();
    if (item.name.toLowerCase().includes(wanted)) found.push(item);
    for (let i = item.children.length - 1; i >= 0; --i) stack.push(item.children[i]);
  }
  return found;
}

export function countOf(items) {
  let count = 0;
  const stack = [...items];
  while (stack.length > 0) {
    const item = stack.pop();
    ++count;
    for (const child of item.children) stack.push(child);
  }
  return count;
}
