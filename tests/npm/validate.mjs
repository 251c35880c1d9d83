// validate.mjs FILE|DIRECTORY…: the Khronos validator's issues, a line each. Fails on any error or warning, and when
// there is nothing to look at. Infos are shown with --infos. Of a directory: the .glb and .gltf files in it.
import fs from 'node:fs';
import path from 'node:path';
import validator from 'gltf-validator';

const severities = ['error', 'warning', 'info', 'hint'];

function filesOf(argument) {
  if (!fs.statSync(argument).isDirectory()) return [argument];
  return fs.readdirSync(argument).sort()
    .filter((name) => /\.(glb|gltf)$/.test(name))
    .map((name) => path.join(argument, name));
}

async function issuesOf(file) {
  const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(file)), {
    uri: path.basename(file),
    maxIssues: 0,
    externalResourceFunction: async (uri) =>
      new Uint8Array(await fs.promises.readFile(path.join(path.dirname(file), decodeURIComponent(uri)))),
  });
  return report.issues.messages;
}

const showInfos = process.argv.includes('--infos');
const files = process.argv.slice(2).filter((argument) => !argument.startsWith('--')).flatMap(filesOf);
let failed = 0;
for (const file of files) {
  const issues = await issuesOf(file);
  if (issues.some((issue) => issue.severity <= 1)) ++failed;
  for (const issue of issues.filter((one) => one.severity <= (showInfos ? 3 : 1)))
    console.log(`${file}: ${severities[issue.severity]}: ${issue.code}: ${issue.message} (${issue.pointer ?? issue.offset ?? ''})`);
}
console.log(`${files.length} files, ${failed} with errors or warnings`);
process.exitCode = failed > 0 || files.length === 0 ? 1 : 0;
