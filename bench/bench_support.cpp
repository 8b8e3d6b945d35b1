#include "bench/bench_support.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "reader/xml_document.h"
#include "tools/zyldae/read_file.h"

namespace zylbench {

std::string WriteTemporary(const std::string& name, const std::string& contents) {
  std::string path = "/tmp/zylbench-" + name;
  std::ofstream(path, std::ios::binary) << contents;
  return path;
}

void ParseOnly(const std::string& path) { zylsdk::ParseXmlFile(path.c_str()); }

bool ReadWhole(const std::string& path) { return zyldae::ReadDocument(path.c_str()).ok; }

void Report(const std::string& what, double parseSeconds, double readSeconds) {
  std::printf("%-40s parse %8.3f s   read %8.3f s   read/parse %6.2f\n", what.c_str(), parseSeconds, readSeconds,
              parseSeconds > 0 ? readSeconds / parseSeconds : 0.0);
}

bool Measure(const std::string& what, const std::string& document) {
  const std::string path = WriteTemporary("measure.dae", document);
  const double parse = BestSeconds(3, [&] { ParseOnly(path); });
  bool ok = true;
  const double read = BestSeconds(3, [&] { ok = ReadWhole(path) && ok; });
  Report(what, parse, read);
  if (!ok) std::printf("  (the read failed)\n");
  if (!std::getenv("ZYLBENCH_KEEP")) std::remove(path.c_str());
  return ok;
}

}  // namespace zylbench
