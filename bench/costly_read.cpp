// Reads each kind of costly document (tests/support/costly_documents.h) of just under 1 MB, in
// both modes, each read in a process of its own, and prints its processor time and peak
// memory. Every read must stay under 1 s and 200 MB; the exit status says whether all did. A
// read stopped at the child's limits (10 s, 2 GB) is marked "OVER" with what it had used.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "bench/bench_support.h"
#include "tests/support/costly_documents.h"
#include "tools/zyldae/read_file.h"

namespace {

constexpr size_t kDocumentBytes = 1000 * 1000;
constexpr double kSecondsAllowed = 1.0;
constexpr long kKilobytesAllowed = 200 * 1024;

struct ChildCost {
  double seconds = 0.0;
  long kilobytes = 0;
  bool finished = false;
};

// A read that goes far beyond the bounds is stopped there, so that the benchmark itself stays
// harmless on a shared machine.
constexpr rlim_t kChildSeconds = 10;
constexpr rlim_t kChildBytes = rlim_t{2} << 30;

// Reads the file in a child process, so that its peak memory is the read's alone.
ChildCost ReadInChild(const std::string& path, bool complete) {
  const pid_t child = fork();
  if (child == 0) {
    const rlimit seconds{kChildSeconds, kChildSeconds};
    const rlimit bytes{kChildBytes, kChildBytes};
    setrlimit(RLIMIT_CPU, &seconds);
    setrlimit(RLIMIT_AS, &bytes);
    zyldae::ReadSettings settings;
    settings.complete = complete;
    zyldae::ReadDocument(path.c_str(), settings);
    _exit(0);
  }
  ChildCost cost;
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) != child) return cost;
  cost.seconds = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                 static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
  cost.kilobytes = usage.ru_maxrss;
  cost.finished = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  return cost;
}

}  // namespace

int main() {
  bool allWithin = true;
  std::printf("%-26s %-9s %9s %9s %9s\n", "document", "mode", "KB", "seconds", "peak MB");
  for (zyltest::CostlyKind kind : zyltest::AllCostlyKinds()) {
    const std::string document = zyltest::CostlyDocument(kind, kDocumentBytes);
    const std::string path = zylbench::WriteTemporary("costly.dae", document);
    for (bool complete : {false, true}) {
      const ChildCost cost = ReadInChild(path, complete);
      const bool within = cost.finished && cost.seconds < kSecondsAllowed && cost.kilobytes < kKilobytesAllowed;
      allWithin = allWithin && within;
      std::fflush(stdout);
      std::printf("%-26s %-9s %9zu %9.3f %9.1f%s\n", zyltest::CostlyName(kind), complete ? "complete" : "default",
                  document.size() / 1024, cost.seconds, cost.kilobytes / 1024.0, within ? "" : "  OVER");
    }
    std::remove(path.c_str());
  }
  return allWithin ? 0 : 1;
}
