// The viewer's parts that need no browser: node --test.
import assert from 'node:assert/strict';
import test from 'node:test';

import { bytesOf } from '../../export/page/viewer/data/base64.js';
import { valueAt } from '../../export/page/viewer/data/curve.js';
import { countOf, matching, outlineOf } from '../../export/page/viewer/data/outline.js';
import { pointerChannels } from '../../export/page/viewer/data/pointer.js';
import { counted, glbName, reportOf } from '../../export/page/viewer/data/report.js';
import { clockText, TimeLine } from '../../export/page/viewer/data/time_line.js';

test('base64 in pieces gives the bytes back, and what is cut off is refused', () => {
  const bytes = Uint8Array.from({ length: 1000 }, (_, i) => (i * 37) & 255);
  const text = (from, to) => Buffer.from(bytes.subarray(from, to)).toString('base64');
  assert.deepEqual(bytesOf([text(0, 300), text(300, 600), text(600, 1000)]), bytes);
  assert.equal(bytesOf([]).length, 0);
  assert.throws(() => bytesOf([text(0, 300).slice(0, -1)]), /cut off/);
});

test('frames and seconds of a scene that begins at frame 10', () => {
  const line = new TimeLine({ startFrame: 10, endFrame: 40, frameRate: 24, start: 0, end: 1.25, frameZero: -10 / 24 }, 1.25);
  assert.deepEqual([line.first, line.last, line.moves], [10, 40, true]);
  // Every frame's own time shows that frame, whatever the rounding of 1/24.
  for (let frame = 10; frame <= 40; ++frame) assert.equal(line.frameAt(line.timeOf(frame)), frame);
  assert.equal(line.frameAt(line.timeOf(20) + 0.9 / 24), 20);
  assert.equal(line.timeOf(1000), 1.25);
  assert.equal(line.timeOf(NaN), 0);
  // Round and round, also over several rounds at once.
  assert.ok(Math.abs(line.after(1, 0.5) - 0.25) < 1e-9);
  assert.ok(Math.abs(line.after(0.25, 5) - 0.25) < 1e-9);
});

test('time lines that make little sense', () => {
  const still = new TimeLine(undefined, 0);
  assert.deepEqual([still.moves, still.frameAt(5), still.after(0, 1)], [false, 0, 0]);
  const odd = new TimeLine({ frameRate: 0, start: 'x', end: -3 }, 2);
  assert.deepEqual([odd.rate, odd.first, odd.last], [30, 0, 60]);
  const long = new TimeLine({ startFrame: 0, endFrame: 1e7, frameRate: 30, start: 0, end: 1e7 / 30 }, 1e7 / 30);
  assert.equal(long.frameAt(long.timeOf(9_999_999)), 9_999_999);
  assert.deepEqual([clockText(2.4), clockText(59.999), clockText(3671.5), clockText(NaN)], ['0:02.40', '1:00.00', '61:11.50', '0:00.00']);
});

test('curves: steps, lines, and Hermite splines with tangents a second long', () => {
  const at = (curve, time) => valueAt(curve, time, []);
  const line = { times: [1, 3], values: [0, 10, 4, 20], size: 2, interpolation: 'LINEAR' };
  assert.deepEqual([at(line, 0), at(line, 2), at(line, 9)], [[0, 10], [2, 15], [4, 20]]);
  assert.deepEqual(at({ ...line, interpolation: 'STEP' }, 2.99), [0, 10]);
  // x^3 between 1 and 3 is its own Hermite spline: tangents 3 and 27.
  const cube = { times: [1, 3], values: [0, 1, 3, 27, 27, 0], size: 1, interpolation: 'CUBICSPLINE' };
  assert.ok(Math.abs(at(cube, 2.5)[0] - 15.625) < 1e-9);
  assert.deepEqual(at({ times: [1], values: [7], size: 1, interpolation: 'LINEAR' }, 5), [7]);
});

test('pointers name their things by number; what the page does not play is left out', () => {
  const channel = (pointer, sampler) => ({ sampler, target: { path: 'pointer', extensions: { KHR_animation_pointer: { pointer } } } });
  const json = { animations: [{
    samplers: ['a', 'b', 'c', 'd'],
    channels: [channel('/cameras/0/perspective/yfov', 0), channel('/extensions/KHR_lights_punctual/lights/12/intensity', 1),
      channel('/materials/3/pbrMetallicRoughness/baseColorFactor', 2), channel('/nodes/1/weights', 3),
      { sampler: 0, target: { path: 'translation', node: 0 } }],
  }] };
  assert.deepEqual(pointerChannels(json).map(({ kind, number, property, sampler }) => [kind, number, property, sampler]), [
    ['camera', 0, 'perspective/yfov', 'a'], ['light', 12, 'intensity', 'b'],
    ['material', 3, 'pbrMetallicRoughness/baseColorFactor', 'c']]);
});

test('the outline shows things, not the nodes that a pivot needs', () => {
  const json = {
    scenes: [{ nodes: [0, 4, 5, 6] }], meshes: [{ primitives: [{ material: 0 }] }, { primitives: [{ material: 1 }] }],
    materials: [{ extensions: { KHR_materials_unlit: {} } }, {}],
    nodes: [
      { name: 'crane', children: [1] }, { name: 'crane pivot', children: [2, 3] }, { name: 'boom', mesh: 1 }, { name: 'hook', mesh: 1 },
      { name: 'Sun', extensions: { KHR_lights_punctual: { light: 0 } } }, { camera: 0 }, { name: 'backdrop', mesh: 0 }],
  };
  const items = outlineOf(json);
  assert.deepEqual(items.map(({ name, kind }) => [name, kind]), [['crane', 'object'], ['Sun', 'light'], ['node 5', 'camera']]);
  assert.deepEqual(items[0].children.map(({ name }) => name), ['boom', 'hook']);
  assert.deepEqual(matching(items, ' HO', 9).map(({ node }) => node), [3]);
  assert.equal(matching(items, '', 2).length, 2);
});

test('an outline of a chain 50,000 deep, and of nodes in a circle', () => {
  const nodes = Array.from({ length: 50_000 }, (_, i) => ({ name: `n${i}`, children: i < 49_999 ? [i + 1] : [0] }));
  assert.equal(countOf(outlineOf({ scenes: [{ nodes: [0] }], nodes })), 50_000);
});

test('reports of any shape are read', () => {
  const good = reportOf(JSON.stringify({ source: 'a.lws', losses: [{ code: 'fog', text: 'fog', count: 1 }],
    missing: [{ kind: 'image', name: 'x', tried: ['p', 7] }], messages: [{ level: 'error', text: 't', line: 3 }, null, 5] }));
  assert.deepEqual(good.missing[0].tried, ['p', '7']);
  assert.deepEqual([good.messages.length, good.messages[0].line, good.losses[0].count], [1, 3, 1]);
  for (const bad of ['', 'null', '[1]', '{"messages": 7, "missing": {"a": 1}, "source": {}}', '{"losses":[{"count":-1}]}'])
    assert.deepEqual([reportOf(bad).messages, reportOf(bad).missing, reportOf(bad).source], [[], [], '']);
  assert.deepEqual([counted(1, 'image'), counted(12345, 'image')], ['1 image', '12,345 images']);
});

test('the name of the saved file is one that every system takes', () => {
  assert.equal(glbName('harbour.lws'), 'harbour.glb');
  assert.equal(glbName('gate.v2'), 'gate.v2.glb');
  assert.equal(glbName('a/b\\c:"<d>\n?.lwo'), 'a_b_c___d___.glb');
  assert.equal(glbName(''), 'scene.glb');
});
