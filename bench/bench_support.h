#pragma once
// Shared pieces of the benchmarks: timing, writing generated documents, and the two
// measurements every benchmark compares: libxml2's parse of a file alone, and our whole read.

#include <chrono>
#include <string>

namespace zylbench {

// Seconds of wall time that `work` takes: the best of `repeats` runs, and of more runs (50 at
// most) until `budgetSeconds` have gone by, which steadies the figure on a noisy machine.
template <class Work>
double BestSeconds(int repeats, Work&& work, double budgetSeconds = 0.0) {
  constexpr int kMostRuns = 50;
  double best = 1e300;
  double spent = 0.0;
  for (int run = 0; run < kMostRuns && (run < repeats || spent < budgetSeconds); ++run) {
    auto start = std::chrono::steady_clock::now();
    work();
    std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    spent += elapsed.count();
    if (elapsed.count() < best) best = elapsed.count();
  }
  return best;
}

// Writes `contents` to a file in the temporary folder and returns its path.
std::string WriteTemporary(const std::string& name, const std::string& contents);

// libxml2's parse of the file (with the reader's options), nothing else.
void ParseOnly(const std::string& path);
// The whole read through the manager and the reader, as an application does it; returns
// whether it succeeded.
bool ReadWhole(const std::string& path);

// Prints one line: what was measured, the two times and their ratio.
void Report(const std::string& what, double parseSeconds, double readSeconds);

// Writes the document to a temporary file, times libxml2's parse alone and our whole read
// (best of three each), reports them, removes the file (unless ZYLBENCH_KEEP is set, for
// profiling) and returns whether the read succeeded.
bool Measure(const std::string& what, const std::string& document);

}  // namespace zylbench
