// build.mjs NPM_DIR OUT_DIR: bundles the viewer into one page, with places for what the program puts in: viewer.html,
// and the same as C++ source, viewer_page.cpp. NPM_DIR holds node_modules.
import { createHash } from 'node:crypto';
import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';

const here = dirname(fileURLToPath(import.meta.url));
const [npm, out] = process.argv.slice(2).map((path) => resolve(path));
const esbuild = createRequire(join(npm, 'package.json'))('esbuild');
const read = (...path) => readFileSync(join(...path), 'utf8');

async function bundled(entry, minify) {
  const result = await esbuild.build({
    entryPoints: [join(here, entry)], bundle: true, minify, write: false, format: 'iife', target: 'es2022',
    nodePaths: [join(npm, 'node_modules')], legalComments: 'none', logLevel: 'warning', charset: 'utf8',
  });
  return result.outputFiles[0].text.trim();
}

const hashOf = (text) => `'sha256-${createHash('sha256').update(text).digest('base64')}'`;

const licence = read(npm, 'node_modules/three/LICENSE').trim();
const script = `/*! three.js, which draws the scene:\n${licence}\n*/\n` + await bundled('main.js', true);
const style = await bundled('style.css', true);
if (/<\/(script|style)|<!--/i.test(script + style)) throw new Error('the bundle would end its own element');

// Only this script and this style run, pictures are only those inside, and nothing can be asked of any network.
const policy = `default-src 'none'; script-src ${hashOf(script)}; style-src ${hashOf(style)}; img-src blob: data:; ` +
  `base-uri 'none'; form-action 'none'`;
const icon = 'data:image/svg+xml;base64,' + Buffer.from(read(here, 'ui/icon.svg').trim()).toString('base64');

// The title, the report and the GLB are left for the program.
const parts = { policy, icon, style, script, viewer: read(here, 'ui/viewer.html').trim() };
const page = read(here, 'page.html').replace(/@@(\w+)@@/g, (place, name) => parts[name] ?? place);
const marks = page.match(/@@\w+@@/g).join(' ');
if (marks !== '@@title@@ @@report@@ @@glb@@') throw new Error(`the page's marks aren't what the program fills: ${marks}`);

// As lines of a C++ string: short enough for every editor, long enough for the compiler's speed.
const bytes = [...Buffer.from(page)].map((byte) =>
  byte === 0x22 || byte === 0x5c ? `\\${String.fromCharCode(byte)}`
    : byte >= 0x20 && byte < 0x7f && byte !== 0x3f ? String.fromCharCode(byte) : `\\${byte.toString(8).padStart(3, '0')}`);
const lines = [];
for (let i = 0; i < bytes.length; i += 4000) lines.push(`    "${bytes.slice(i, i + 4000).join('')}"`);
const source = `// Made by export/page/viewer/build.mjs.\n#include "export/page/viewer_page.h"\n\n` +
  `namespace page {\n\nconst std::string_view viewer_page(\n${lines.join('\n')},\n    ${bytes.length});\n\n} // namespace page\n`;

mkdirSync(out, { recursive: true });
writeFileSync(join(out, 'viewer.html'), page);
writeFileSync(join(out, 'viewer_page.cpp'), source);
