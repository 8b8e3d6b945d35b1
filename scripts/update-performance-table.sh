#!/usr/bin/env bash
# Writes docs/performance.md: the SAX limit, libxml2's tree, our read and the peer importer on the
# large corpus documents and on generated ones, each read in a fresh process. Run it on a quiet
# machine: every figure is measured.
set -euo pipefail
cd "$(dirname "$0")/.."
WITH_PEER=1 WITH_BENCH=1 scripts/install-deps.sh
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
gives the medians. MB are millions of bytes. The ways of reading:

- **SAX limit**: libxml2's SAX2 stream with the text of every number list converted as it streams
  (`std::from_chars`), keeping nothing: what any reader built on our parser must do at least;
- **libxml2 tree**: libxml2's document tree, built and freed, nothing else;
- **ours**: the whole read through `ReadColladaFile`, as an application does it (the process ends
  with the scene still held: freeing it is the application's business), in the Release build that
  `make build` makes (optimized at link time, `ZYL_LTO`);
- **peer**: Assimp's COLLADA importer from Debian's libassimp-dev, without post-processing.

"scene MB" is what the scene holds once the reader is gone (the heap's bytes in use, and the
kit's large blocks mapped apart from it); "ours MB / scene" compares our peak with it.
"failed" marks a read that did not succeed (the default reading refuses some corpus documents by
design, see docs/corpus.md). The second table reads each generated kind at a quarter of its size
and whole: a cost that grows linearly with the input grows about 4 times. Time is measured as
above; the instructions are those the process executes, counted by valgrind's cachegrind (the
machine's virtualisation gives no hardware counters), less those of a process that reads
nothing: unlike time, they are the same on every run. Only the kernel's work for the process
(its page faults) is left out of them.

Memory is time here, and how much depends on where the memory was last. This virtual machine
gives the memory that processes free back to its host about two seconds later (virtio's free page
reporting); the next process to touch it pays the host's faults on top of its own. The last table
gives what writing memory costs a fresh process: memory untouched since the machine settled, and
memory another process freed just before. A read started right after another process freed its
memory therefore measures far less than one started on a settled machine (the 1M-triangle mesh:
about 0.3 s against 0.6 s). The benchmark lets the machine settle for 3 s after every process that
held memory, so that every read pays as the first one after a pause does: the same every time,
and the most. "scene memory s" is what only writing the scene's own bytes, in the pages the kit
asks for (4 KB ones unless ZYL_HUGE_PAGES=1), costs a fresh process at the rate measured (as in
that table) when the run began; "scene memory / SAX"
compares it with the SAX limit: above 2.5, the scene's memory alone costs more than 2.5 times
the SAX limit, before any byte of the document is read.

The kit and the reader can ask for huge pages for what they fill at once (arrays of 2 MB and
more; the element tree's and the kit objects' blocks, mapped apart and aligned to 2 MB:
`kit/memory_advice.h`), but only when the environment variable ZYL_HUGE_PAGES is "1": as the
last table shows, on this kind of machine a huge page of memory untouched since the machine
settled costs more than the 512 small pages it replaces, and the 1M-triangle mesh read in
0.35 s of processor time with small pages against 0.70 s with huge ones (medians of 4, each after
3 s of rest); on an earlier machine of ours the huge pages were the cheaper. This machine's
transparent huge pages are on request ("madvise"). Memory about to be written (an array reserved
for a known count, a block filled from its start, a number list as it streams) is mapped a range
at a time ahead of the writes (Linux's MADV_POPULATE_WRITE, from 5.14). What remains on the
general heap (strings, small arrays, hash tables) is in 4 KB pages: asking glibc for huge pages
there (`GLIBC_TUNABLES=glibc.malloc.hugetlb=1`) made no difference to the reads of 16,000
materials or 100,000 nodes here.

TEXT
  echo "Machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'); $(date -u +%Y-%m-%d)."
  echo
  ./build/bench/bench_compare_read --scaling "$corpus"
  echo
  ./build/bench/bench_compare_read --memory-cost
} > docs/performance.md
echo "docs/performance.md written"
