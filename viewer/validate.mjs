// Runs the Khronos glTF validator over every .gltf and .glb file of a folder and prints one
// line of JSON per file: {file, errors, warnings, infos, messages: {code: count}}.
//   node validate.mjs FOLDER
import fs from 'node:fs';
import path from 'node:path';
import validator from 'gltf-validator';

const folder = process.argv[2];
if (!folder) {
  console.error('usage: node validate.mjs FOLDER');
  process.exit(2);
}

async function validate(file) {
  const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(file)), {
    uri: path.basename(file),
    maxIssues: 0,
    externalResourceFunction: (uri) =>
      fs.promises.readFile(path.resolve(path.dirname(file), decodeURIComponent(uri)))
        .then((data) => new Uint8Array(data)),
  });
  const messages = {};
  for (const message of report.issues.messages) messages[message.code] = (messages[message.code] || 0) + 1;
  return {
    file: path.basename(file),
    errors: report.issues.numErrors,
    warnings: report.issues.numWarnings,
    infos: report.issues.numInfos,
    messages,
  };
}

const files = fs.readdirSync(folder).filter((name) => /\.(gltf|glb)$/.test(name)).sort();
for (const name of files) {
  try {
    console.log(JSON.stringify(await validate(path.join(folder, name))));
  } catch (error) {
    console.log(JSON.stringify({ file: name, errors: 1, warnings: 0, infos: 0, messages: { VALIDATOR_FAILED: 1 } }));
  }
}
