// Writes the conversion table of docs/gltf.md from a folder made by update-gltf-table.sh:
// NAME.gltf / NAME_complete.glb with NAME.*.leftout (the tool's standard error), NAME.*.failed
// for documents that do not read, and validation.jsonl (viewer/validate.mjs).
//   node scripts/gltf-table.mjs FOLDER docs/gltf.md
import fs from 'node:fs';
import path from 'node:path';

const [folder, page] = process.argv.slice(2);
const marker = '<!-- The table below is written by scripts/update-gltf-table.sh. -->';

const results = new Map();
for (const line of fs.readFileSync(path.join(folder, 'validation.jsonl'), 'utf8').split('\n'))
  if (line.trim()) results.set(JSON.parse(line).file, JSON.parse(line));

const files = fs.readdirSync(folder).filter((f) => /\.(leftout)$/.test(f)).map((f) => f.replace(/\.leftout$/, '')).sort();
const rows = [];
for (const file of files) {
  const complete = file.endsWith('_complete.glb');
  const document = file.replace(/(_complete)?\.(gltf|glb)$/, '').replaceAll('~', '/') + '.dae';
  const mode = complete ? 'complete, .glb' : 'default, .gltf';
  if (fs.existsSync(path.join(folder, file + '.failed'))) {
    rows.push(`| \`${document}\` | ${mode} | does not read | | | | |`);
    continue;
  }
  const result = results.get(file) || { errors: '?', warnings: '?', infos: '?', messages: {} };
  const messages = Object.entries(result.messages).map(([code, count]) => `${code} ${count}`).join(', ');
  const leftOut = fs.readFileSync(path.join(folder, file + '.leftout'), 'utf8').split('\n')
    .filter((l) => l.startsWith('left out: ')).map((l) => l.slice('left out: '.length)).join('; ');
  rows.push(`| \`${document}\` | ${mode} | ${result.errors} | ${result.warnings} | ${result.infos} | ${messages} | ${leftOut} |`);
}

const text = fs.readFileSync(page, 'utf8');
const head = text.includes(marker) ? text.slice(0, text.indexOf(marker)) : text + '\n';
const table = ['| document | mode | errors | warnings | infos | validator messages | left out |', '|---|---|---|---|---|---|---|', ...rows];
fs.writeFileSync(page, head + marker + '\n\n' + table.join('\n') + '\n');
