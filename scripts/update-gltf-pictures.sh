#!/usr/bin/env bash
# Writes docs/gltf-pictures/: three corpus documents as the viewer page shows them in headless
# Chromium, and pictures.md with each picture next to the document's `zyldae info`.
set -euo pipefail
cd "$(dirname "$0")/.."
corpus=../shared/corpus
documents=(gazebo_models/polaris_ranger_ev_opencollada_max.dae astrobee_media/iss_jpm_module.dae cts/effect_blinn_diffuse_texture.dae)
[ -d "$corpus" ] || { echo "no corpus at $corpus" >&2; exit 1; }
make build >/dev/null
pictures=docs/gltf-pictures
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$pictures"
{
  echo "# Corpus documents in the viewer"
  echo
  echo "Written by \`scripts/update-gltf-pictures.sh\`: the page of \`zyldae view\` in headless Chromium"
  echo "(800 × 600), and \`zyldae info\` of the same document."
} >"$pictures/pictures.md"
for document in "${documents[@]}"; do
  name=$(basename "$document" .dae)
  ./build/tools/zyldae/zyldae view "$corpus/$document" -o "$work/$name.html" 2>/dev/null
  chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking \
    --disable-component-update --disable-sync --enable-unsafe-swiftshader --user-data-dir="$work/profile" \
    --window-size=800,600 --virtual-time-budget=10000 --screenshot="$pictures/$name.png" "file://$work/$name.html" 2>/dev/null
  {
    echo
    echo "## \`$document\`"
    echo
    echo "![$name]($name.png)"
    echo
    echo '```'
    ./build/tools/zyldae/zyldae info "$corpus/$document" || true
    echo '```'
  } >>"$pictures/pictures.md"
done
echo "$pictures written"
