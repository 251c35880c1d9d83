// The page's own start: what the program put into it is read and shown.
import { bytesOf } from './data/base64.js';
import { counted, glbName, grouped, reportOf } from './data/report.js';
import { setUpPanel } from './ui/panel.js';
import { partsOf } from './ui/parts.js';
import { showReport, troubles } from './ui/report_panel.js';
import { showScene } from './viewer.js';

const element = document.querySelector('[data-part=viewer]');
const part = partsOf(element);

function readBytes() {
  const blocks = [...document.querySelectorAll('script[type="application/octet-stream;base64"]')];
  const bytes = bytesOf(blocks.map((block) => block.textContent.trim()));
  for (const block of blocks) block.remove(); // megabytes of text that nothing needs any more
  return bytes;
}

function setUpSaving(bytes, name) {
  part('save').disabled = false;
  part('save').addEventListener('click', () => {
    const url = URL.createObjectURL(new Blob([bytes], { type: 'model/gltf-binary' }));
    const link = document.createElement('a');
    link.href = url;
    link.download = name;
    link.click();
    setTimeout(() => URL.revokeObjectURL(url), 10000);
    part('live').textContent = `Saved as ${name}`;
  });
}

function showWords(report) {
  part('title').textContent = report.source || 'Scene';
  part('facts').textContent = report.counters.slice(0, 3)
    .map(({ name, count }) => (count === 1 ? `1 ${name.replace(/s$/, '')}` : `${grouped(count)} ${name}`)).join(' · ');
  showReport(part('report'), report);
  const count = troubles(report);
  part('badge').hidden = part('dot').hidden = count === 0;
  part('badge').textContent = grouped(count);
  part('badge').setAttribute('aria-label', counted(count, 'thing') + ' to know of');
}

async function start() {
  const report = reportOf(document.getElementById('report').textContent);
  setUpPanel(element, part);
  showWords(report);
  try {
    const bytes = readBytes();
    setUpSaving(bytes, glbName(report.source));
    // The words first: large scenes take a while.
    await new Promise((ready) => requestAnimationFrame(() => setTimeout(ready)));
    const nothing = await showScene(part, bytes);
    part('veil').textContent = nothing;
    part('veil').hidden = !nothing;
    element.dataset.ready = 'yes';
  } catch (error) {
    const noWebGl = /webgl/i.test(error?.message ?? '');
    part('veil').textContent = noWebGl
      ? 'This browser draws no 3D pictures (it has no WebGL 2). The GLB can be saved all the same.'
      : `The scene can't be shown: ${error?.message ?? error}`;
    part('pad').hidden = true;
    element.dataset.ready = 'failed';
  }
}

start();
