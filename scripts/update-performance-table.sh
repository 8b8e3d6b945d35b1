#!/usr/bin/env bash
# Writes docs/performance.md: the SAX limit, libxml2's tree, our read and the peer importer on the
# large corpus documents and on generated ones, each read in a fresh process. Run it on a quiet
# machine: every figure is measured.
set -euo pipefail
cd "$(dirname "$0")/.."
WITH_PEER=1 scripts/install-deps.sh
make build >/dev/null
corpus=../shared/corpus
{
  cat <<'TEXT'
# Performance

Written by `scripts/update-performance-table.sh` (the program is `bench/compare_read.cpp`). Every
read happens in a fresh process of its own, as a user's program pays for it: the figures are the
processor time (user and system) and the peak resident memory that the kernel accounts to that
process, less those of a process that reads nothing. Each document is read in five rounds, every
way once per round in turn, so that a slow moment of the machine falls on all of them; the table
gives the medians. The ways of reading:

- **SAX limit**: libxml2's SAX2 stream with the text of every number list converted as it streams
  (`std::from_chars`), keeping nothing: what any reader built on our parser must do at least;
- **libxml2 tree**: libxml2's document tree, built and freed, nothing else;
- **ours**: the whole read through `ReadColladaFile`, as an application does it (the process ends
  with the scene still held: freeing it is the application's business);
- **peer**: Assimp's COLLADA importer from Debian's libassimp-dev, without post-processing.

"scene MB" is what the scene holds once the reader is gone (the heap's bytes in use, and the
kit's large blocks mapped apart from it); "ours MB / scene" compares
our peak with it. "failed" marks a read that did not succeed (the default reading refuses some
corpus documents by design, see docs/corpus.md). The second table reads each generated kind at a
quarter of its size and whole: a cost that grows linearly with the input grows about 4 times.
Processor instructions are not counted: the machine's virtualisation gives no hardware counters.

Memory is time here: a page fault costs about 10 us, and a translation miss under the
virtualisation is dear. The kit and the reader ask for huge pages for what they fill at once (arrays
of 2 MB and more; the element tree's and the kit objects' blocks, mapped apart and aligned to
2 MB: `kit/memory_advice.h`); this machine's transparent huge pages are on request ("madvise").
Where they are off, the same reads take more page faults. Memory about to be written (an array
reserved for a known count, a block filled from its start, a number list as it streams) is
mapped a range at a time ahead of the writes (Linux's MADV_POPULATE_WRITE, from 5.14): here
that costs about a third of the faults it replaces. What remains on the general heap
(strings, small arrays, hash tables) is in 4 KB pages unless the application asks glibc for huge
pages (`GLIBC_TUNABLES=glibc.malloc.hugetlb=1` in its environment).

TEXT
  echo "Machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'); $(date -u +%Y-%m-%d)."
  echo
  ./build/bench/bench_compare_read --scaling "$corpus"
} > docs/performance.md
echo "docs/performance.md written"
