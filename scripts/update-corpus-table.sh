#!/usr/bin/env bash
# Writes docs/corpus.md: how every document of ../shared/corpus reads, by default, with the
# complete reading and with Assimp (installed here when missing).
set -euo pipefail
cd "$(dirname "$0")/.."
corpus=../shared/corpus
[ -d "$corpus" ] || { echo "no corpus at $corpus" >&2; exit 1; }
WITH_PEER=1 scripts/install-deps.sh
make build >/dev/null
./build/tools/corpus_table/corpus_table "$corpus" > docs/corpus.md
echo "docs/corpus.md written"
