// Draws a .glb in headless Chromium and saves a PNG.
// usage: node render.mjs FILE.glb OUT.png [width=960] [height=640] [time=SECONDS] [camera=1] [yaw=DEG] [pitch=DEG]
//        [up=X,Y,Z] [zoom=F] [environment=F] [background=CSS-COLOUR]
import {createServer} from 'node:http';
import {readFile} from 'node:fs/promises';
import {fileURLToPath} from 'node:url';
import {dirname, join, normalize} from 'node:path';
import {chromium} from 'playwright-core';

const [file, out, ...rest] = process.argv.slice(2);
if (!out) {
    console.error('usage: node render.mjs FILE.glb OUT.png [name=value …]');
    process.exit(2);
}
const settings = Object.fromEntries(rest.map(word => word.split('=')));
const here = dirname(fileURLToPath(import.meta.url));
const types = {'.js': 'text/javascript', '.html': 'text/html', '.glb': 'model/gltf-binary'};

const server = createServer(async (request, response) => {
    const path = normalize(new URL(request.url, 'http://localhost').pathname);
    const place = path === '/' ? join(here, 'page.html')
        : path === '/file.glb' ? file
        : path.startsWith('/three/') ? join(here, 'node_modules', path) : null;
    try {
        const body = await readFile(place);
        response.writeHead(200, {'content-type': types[path.slice(path.lastIndexOf('.'))] ?? 'text/html'});
        response.end(body);
    } catch {
        response.writeHead(404).end();
    }
});
await new Promise(ready => server.listen(0, '127.0.0.1', ready));

const browser = await chromium.launch({
    executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
    args: ['--no-sandbox', '--disable-quic', '--no-first-run', '--disable-background-networking', '--disable-component-update',
        '--disable-sync', '--use-gl=angle', '--use-angle=swiftshader', '--enable-unsafe-swiftshader', '--ignore-gpu-blocklist'],
});
try {
    const page = await browser.newPage({viewport: {width: Number(settings.width ?? 960), height: Number(settings.height ?? 640)}});
    page.on('console', message => console.error(message.text()));
    await page.goto(`http://127.0.0.1:${server.address().port}/?${new URLSearchParams(settings)}`);
    await page.waitForFunction('window.finished', null, {timeout: 120000});
    const finished = await page.evaluate('window.finished');
    if (finished !== 'ok') throw new Error(finished);
    await page.screenshot({path: out});
} finally {
    await browser.close();
    server.close();
}
