#!/usr/bin/env bash
# Writes docs/performance.md: the floor, our read and the peer importer on the large corpus
# documents and on generated ones. Run it on a quiet machine: every time is measured.
set -euo pipefail
cd "$(dirname "$0")/.."
WITH_PEER=1 scripts/install-deps.sh
make build >/dev/null
corpus=../shared/corpus
{
  cat <<'TEXT'
# Performance

Written by `scripts/update-performance-table.sh` (the program is `bench/compare_read.cpp`). Each
document is read three ways, each in processes of its own, freeing included; each time is the best
over five processes, each reading at least three times and more until a second has gone by:

- **floor**: libxml2's parse of the document plus converting every number of its arrays with
  `std::from_chars`, nothing else: what any reader of the text must do at least;
- **ours**: the whole read through the manager and the reader, as an application does it;
- **peer**: Assimp's COLLADA importer from Debian's libassimp-dev, without post-processing.

"failed" marks a read that did not succeed (our reader refuses some corpus documents by design,
see docs/corpus.md). Peak memory is measured in a process of its own that reads the document once.

On the shared 2-core machine where the table is made, a ratio moves by about a tenth from one run
to the next. The peer parses without building an XML tree, so on documents made of many small
elements (nodes, the real-world meshes) it is faster than the floor itself; there the floor is the
bound that matters.

TEXT
  echo "Machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'); $(date -u +%Y-%m-%d)."
  echo
  ./build/bench/bench_compare_read "$corpus"
} > docs/performance.md
echo "docs/performance.md written"
