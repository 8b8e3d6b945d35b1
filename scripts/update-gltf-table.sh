#!/usr/bin/env bash
# Rewrites the table at the end of docs/gltf.md: every document of ../shared/corpus (and the
# example scene) converted in both reading modes, what the glTF validator says of each file,
# and what each conversion left out.
set -euo pipefail
cd "$(dirname "$0")/.."
corpus=../shared/corpus
[ -d "$corpus" ] || { echo "no corpus at $corpus" >&2; exit 1; }
make build >/dev/null
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

convert() {  # document, name
  ./build/tools/zyldae/zyldae convert "$1" "$out/$2.gltf" 2>"$out/$2.gltf.leftout" || echo "does not read" >"$out/$2.gltf.failed"
  ./build/tools/zyldae/zyldae convert --complete "$1" "$out/$2_complete.glb" 2>"$out/$2_complete.glb.leftout" ||
    echo "does not read" >"$out/$2_complete.glb.failed"
}
# Files are named after the document, its folders joined by '~'; the table shows them as paths.
convert examples/scene.dae "examples~scene"
while IFS= read -r document; do
  name=${document#"$corpus"/}
  name=${name%.dae}
  convert "$document" "${name//\//\~}"
done < <(find "$corpus" -name '*.dae' | LC_ALL=C sort)
node viewer/validate.mjs "$out" >"$out/validation.jsonl"
node scripts/gltf-table.mjs "$out" docs/gltf.md
echo "docs/gltf.md written"
