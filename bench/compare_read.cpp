// Compares reading large documents as a user pays for it: each read in a fresh process of its
// own, measured by the processor time (user and system) and the peak resident memory that the
// kernel accounts to that process. The ways of reading:
//   sax    libxml2's SAX2 stream with the text of every number list converted as it streams
//          (std::from_chars), keeping nothing: the limit of any reader built on our parser;
//   tree   libxml2's document tree, built and freed, nothing else;
//   ours   the whole read through the manager and the reader, as an application does it;
//   peer   Assimp's COLLADA importer without post-processing (when the bench was built with it).
// Beside them, what only writing memory costs (touch-huge and touch-small write N MiB in 2 MB
// or 4 KB pages): the main table prices the scene's own bytes at that rate, the least any read
// that builds the scene pays.
// Each document is read ROUNDS times (5 unless given) by every way in turn, so that a slow
// moment of the machine falls on all of them; the table gives medians. A process that reads
// nothing is measured the same way and subtracted: what remains is what the read costs.
//
// After a process that held more than a few megabytes the machine is left to settle (SETTLE
// seconds, 3 unless given) before the next one starts. A virtual machine that reports free
// memory to its host (virtio's free page reporting, about 2 s after the memory is freed) makes
// the next process that touches that memory pay the host's faults as well; a process started
// right after another one that freed memory would find it still backed, and measure far less.
// Settling makes every process pay like the first one after a pause: the same, and the most.
//
//   bench_compare_read [CORPUS_FOLDER] [--only TEXT] [--rounds N] [--settle SECONDS] [--keep]
//                      [--scaling] [--memory-cost]
//
// --only keeps the documents whose name contains TEXT; --keep leaves the generated documents
// in /tmp (zylbench-compare-N.dae), for a profiler's use; --scaling reads each generated kind at
// a quarter of its size too and prints how the cost grows with the input, in processor time and,
// when valgrind is installed, in instructions executed (counted by cachegrind, the same on every
// run, less those of a process that reads nothing); --memory-cost prints only what touching
// memory costs a fresh process, in huge and in small pages.
// Prints Markdown (scripts/update-performance-table.sh writes it to docs/performance.md). The
// documents are the corpus files of at least 1 MB, when the folder is given and exists, and
// generated ones: a million-triangle mesh, 100,000 nodes, 1,000 nodes x 1,000 keys, a skin of
// 200 joints over 100,000 vertices and 16,000 materials.

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "bench/bench_support.h"
#include "bench/generated_documents.h"
#include "kit/memory_advice.h"
#include "kit/zylsdk.h"
#include "reader/collada_reader.h"

#ifdef ZYL_HAVE_PEER
#include <assimp/Importer.hpp>
#include <assimp/scene.h>
#endif

namespace {

namespace fs = std::filesystem;

constexpr int kDefaultRounds = 5;
constexpr double kDefaultSettleSeconds = 3.0;
// A process whose peak exceeds the idle one's by more than this leaves memory to be reported.
constexpr double kSettleAboveMegabytes = 4.0;
constexpr uintmax_t kLargeFile = 1000000;

// ---------------------------------------------------------------- the SAX limit

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool IsNumberList(const xmlChar* name) {
  static const char* const kLists[] = {"float_array", "int_array", "p", "v", "vcount", "matrix"};
  for (const char* list : kLists)
    if (std::strcmp(reinterpret_cast<const char*>(name), list) == 0) return true;
  return false;
}

// Converts the numbers of a list as its text arrives in chunks; a number cut by the end of a
// chunk waits in `pending` for the rest.
struct StreamedNumbers {
  bool inList = false;
  std::string pending;
  double sum = 0.0;

  void Convert(const char* begin, const char* end) {
    double value = 0.0;
    if (begin < end && std::from_chars(begin, end, value).ec == std::errc()) sum += value;
  }
  void Text(const char* text, int length) {
    const char* p = text;
    const char* end = text + length;
    if (!pending.empty()) {
      while (p < end && !IsSpace(*p)) pending.push_back(*p++);
      if (p == end) return;
      Convert(pending.data(), pending.data() + pending.size());
      pending.clear();
    }
    while (p < end) {
      while (p < end && IsSpace(*p)) ++p;
      const char* token = p;
      while (p < end && !IsSpace(*p)) ++p;
      if (p == end) {
        pending.assign(token, p);
        return;
      }
      Convert(token, p);
    }
  }
  void End() {
    Convert(pending.data(), pending.data() + pending.size());
    pending.clear();
    inList = false;
  }
};

bool SaxLimit(const std::string& path) {
  xmlSAXHandler handler{};
  handler.initialized = XML_SAX2_MAGIC;
  handler.startElementNs = [](void* context, const xmlChar* name, const xmlChar*, const xmlChar*, int,
                              const xmlChar**, int, int, const xmlChar**) {
    auto* numbers = static_cast<StreamedNumbers*>(static_cast<xmlParserCtxt*>(context)->_private);
    numbers->inList = IsNumberList(name);
  };
  handler.endElementNs = [](void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
    auto* numbers = static_cast<StreamedNumbers*>(static_cast<xmlParserCtxt*>(context)->_private);
    if (numbers->inList) numbers->End();
  };
  handler.characters = [](void* context, const xmlChar* text, int length) {
    auto* numbers = static_cast<StreamedNumbers*>(static_cast<xmlParserCtxt*>(context)->_private);
    if (numbers->inList) numbers->Text(reinterpret_cast<const char*>(text), length);
  };
  FILE* file = std::fopen(path.c_str(), "rb");
  if (!file) return false;
  StreamedNumbers numbers;
  xmlParserCtxt* context = xmlCreatePushParserCtxt(&handler, nullptr, nullptr, 0, path.c_str());
  xmlCtxtUseOptions(context, XML_PARSE_HUGE | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  context->_private = &numbers;
  std::vector<char> chunk(1 << 16);
  bool ok = true;
  for (size_t length; ok && (length = std::fread(chunk.data(), 1, chunk.size(), file)) > 0;)
    ok = xmlParseChunk(context, chunk.data(), static_cast<int>(length), 0) == 0;
  ok = ok && xmlParseChunk(context, nullptr, 0, 1) == 0 && context->wellFormed;
  xmlFreeParserCtxt(context);
  std::fclose(file);
  volatile double sum = numbers.sum;
  (void)sum;
  return ok;
}

// ---------------------------------------------------------------- the other ways

bool LibxmlTree(const std::string& path) {
  xmlDoc* document = xmlReadFile(path.c_str(), nullptr, XML_PARSE_HUGE | XML_PARSE_NONET | XML_PARSE_NOERROR |
                                                        XML_PARSE_NOWARNING);
  xmlFreeDoc(document);
  return document != nullptr;
}

// The process's peak resident memory in kilobytes, from the kernel's high-water mark of its
// address space. The parent's wait4 cannot give it: a process's maximum resident size survives
// exec, so it would report the benchmark's own size at the fork.
long PeakKilobytes() {
  FILE* status = std::fopen("/proc/self/status", "r");
  long peak = 0;
  char line[256];
  while (status && std::fgets(line, sizeof line, status))
    if (std::sscanf(line, "VmHWM: %ld kB", &peak) == 1) break;
  if (status) std::fclose(status);
  return peak;
}

// Ends a child: prints its peak memory and the scene's size, then exits with whether the read
// succeeded.
[[noreturn]] void EndChild(bool ok, size_t sceneBytes) {
  std::printf("%ld %zu\n", PeakKilobytes(), sceneBytes);
  std::fflush(stdout);
  _exit(ok ? 0 : 1);
}

// The general heap's bytes in use, and the large blocks the kit maps apart from it.
size_t HeapInUse() {
  const struct mallinfo2 heap = mallinfo2();
  return heap.uordblks + heap.hblkhd + zylsdk::MappedLargeBlockBytes();
}

// Our read, then the process ends: what a program does with the scene next is not the read's.
// Prints the bytes the scene holds on the heap once the reader is gone.
[[noreturn]] void Ours(const std::string& path) {
  const size_t before = HeapInUse();
  zylsdk::KZylSdkManager manager;
  const zylsdk::ColladaReadResult read = zylsdk::ReadColladaFile(manager, path.c_str());
  const size_t after = HeapInUse();
  EndChild(read.ok, after > before ? after - before : 0);
}

// Writes one byte in every page of `mebibytes` MiB of new memory, in 2 MB pages when `huge`:
// what memory costs a process apart from anything it computes.
bool TouchMemory(const std::string& mebibytes, bool huge) {
  const size_t bytes = static_cast<size_t>(std::max(1, std::atoi(mebibytes.c_str()))) << 20;
  zylsdk::LargeBlock block(bytes);
  madvise(block.data(), bytes, huge ? MADV_HUGEPAGE : MADV_NOHUGEPAGE);
  const long page = sysconf(_SC_PAGESIZE);
  for (size_t at = 0; at < bytes; at += static_cast<size_t>(page)) static_cast<volatile char*>(block.data())[at] = 1;
  return true;
}

#ifdef ZYL_HAVE_PEER
bool Peer(const std::string& path) {
  Assimp::Importer importer;
  return importer.ReadFile(path, 0) != nullptr;
}
#endif

// ---------------------------------------------------------------- measuring in a child

struct Measurement {
  bool available = false;
  bool ok = false;
  double seconds = 0.0;     // processor time, user and system
  double megabytes = 0.0;   // peak resident memory
  double sceneMegabytes = 0.0;
};

// Child side: one read of the file by one way, then the process ends (EndChild).
[[noreturn]] void RunWay(const std::string& way, const std::string& path) {
  bool ok = true;
  if (way == "sax") {
    ok = SaxLimit(path);
  } else if (way == "tree") {
    ok = LibxmlTree(path);
  } else if (way == "ours") {
    Ours(path);
  } else if (way == "touch-huge" || way == "touch-small") {
    ok = TouchMemory(path, way == "touch-huge");
#ifdef ZYL_HAVE_PEER
  } else if (way == "peer") {
    ok = Peer(path);
#endif
  } else if (way != "none") {
    _exit(3);
  }
  EndChild(ok, 0);
}

double Seconds(const timeval& time) { return static_cast<double>(time.tv_sec) + time.tv_usec / 1e6; }

// Parent side: runs this program again as `--way WAY FILE` and takes the kernel's accounts of it.
Measurement RunChild(const char* self, const std::string& way, const std::string& path) {
  Measurement result;
  int channel[2];
  if (pipe(channel) != 0) return result;
  const pid_t child = fork();
  if (child == 0) {
    dup2(channel[1], STDOUT_FILENO);
    close(channel[0]);
    execl(self, self, "--way", way.c_str(), path.c_str(), static_cast<char*>(nullptr));
    _exit(4);
  }
  close(channel[1]);
  char buffer[64] = {};
  const ssize_t length = read(channel[0], buffer, sizeof buffer - 1);
  close(channel[0]);
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  if (!WIFEXITED(status) || WEXITSTATUS(status) > 1) return result;
  result.available = true;
  result.ok = WEXITSTATUS(status) == 0;
  result.seconds = Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
  long peakKilobytes = 0;
  size_t sceneBytes = 0;
  if (length <= 0 || std::sscanf(buffer, "%ld %zu", &peakKilobytes, &sceneBytes) != 2) return Measurement();
  result.megabytes = static_cast<double>(peakKilobytes) * 1024.0 / 1e6;
  result.sceneMegabytes = static_cast<double>(sceneBytes) / 1e6;
  return result;
}

double Median(std::vector<double> values) {
  if (values.empty()) return 0.0;
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

struct Document {
  std::string name;
  std::string path;
  bool generated = false;
};

double gSettleSeconds = kDefaultSettleSeconds;

void Settle() { usleep(static_cast<useconds_t>(gSettleSeconds * 1e6)); }

// The medians of each way over `rounds` rounds, the ways taking turns; the process that
// reads nothing is subtracted.
std::vector<Measurement> MeasureWays(const char* self, const std::vector<std::string>& ways, const std::string& path,
                                     int rounds) {
  std::vector<std::vector<Measurement>> runs(ways.size() + 1);
  for (int round = 0; round < rounds; ++round) {
    runs[0].push_back(RunChild(self, "none", path));
    const double idlePeak = runs[0].back().megabytes;
    for (size_t way = 0; way < ways.size(); ++way) {
      runs[way + 1].push_back(RunChild(self, ways[way], path));
      if (runs[way + 1].back().megabytes > idlePeak + kSettleAboveMegabytes) Settle();
    }
  }
  auto median = [](const std::vector<Measurement>& all, double Measurement::*field) {
    std::vector<double> values;
    for (const Measurement& m : all) values.push_back(m.*field);
    return Median(values);
  };
  const double idleSeconds = median(runs[0], &Measurement::seconds);
  const double idleMegabytes = median(runs[0], &Measurement::megabytes);
  std::vector<Measurement> results;
  for (size_t way = 1; way < runs.size(); ++way) {
    Measurement m;
    m.available = std::all_of(runs[way].begin(), runs[way].end(), [](const Measurement& r) { return r.available; });
    m.ok = m.available && runs[way].front().ok;
    m.seconds = std::max(0.0, median(runs[way], &Measurement::seconds) - idleSeconds);
    m.megabytes = std::max(0.0, median(runs[way], &Measurement::megabytes) - idleMegabytes);
    m.sceneMegabytes = median(runs[way], &Measurement::sceneMegabytes);
    results.push_back(m);
  }
  return results;
}

// The generated kinds, each at a scale: 4 is the full size, 1 a quarter of it.
struct GeneratedKind {
  const char* name;
  std::function<std::string(int scale)> make;
};

std::vector<GeneratedKind> GeneratedKinds() {
  return {
      {"generated: 1M-triangle mesh", [](int s) { return zylbench::MeshDocument(s == 4 ? 708 : 354); }},
      {"generated: 100,000 sibling nodes", [](int s) { return zylbench::SiblingNodesDocument(25000 * s); }},
      {"generated: 1,000 nodes x 1,000 keys", [](int s) { return zylbench::AnimationDocument(250 * s, 1000, false); }},
      {"generated: skin of 200 joints, 100,000 vertices",
       [](int s) { return zylbench::SkinDocument(25000L * s, 200, 1); }},
      {"generated: 16,000 materials", [](int s) { return zylbench::MaterialsDocument(4000 * s); }},
  };
}

std::vector<Document> CorpusDocuments(const std::string& corpus) {
  std::vector<Document> documents;
  std::error_code error;
  if (corpus.empty() || !fs::is_directory(corpus, error)) return documents;
  for (const auto& entry : fs::recursive_directory_iterator(corpus, error))
    if (entry.is_regular_file() && entry.path().extension() == ".dae" && entry.file_size() >= kLargeFile)
      documents.push_back({fs::relative(entry.path(), corpus).string(), entry.path().string(), false});
  std::sort(documents.begin(), documents.end(), [](const Document& a, const Document& b) { return a.name < b.name; });
  return documents;
}

std::string Number(double value, const char* format) {
  char text[32];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

std::string Cell(const Measurement& m, bool memory) {
  if (!m.available) return "n/a";
  return Number(memory ? m.megabytes : m.seconds, memory ? "%.0f" : "%.3f") + (m.ok ? "" : " (failed)");
}

std::string Ratio(double a, double b) { return b > 0.0 ? Number(a / b, "%.2f") : "n/a"; }

// The instructions that reading `path` by `way` executes in a process of its own, counted by
// valgrind's cachegrind; 0 when valgrind cannot be run.
double CountInstructions(const char* self, const std::string& way, const std::string& path) {
  const std::string command = "valgrind --tool=cachegrind --cache-sim=no --cachegrind-out-file=/dev/null '" +
                              std::string(self) + "' --way " + way + " '" + path + "' 2>&1 >/dev/null";
  FILE* output = popen(command.c_str(), "r");
  if (!output) return 0.0;
  double count = 0.0;
  char line[512];
  while (std::fgets(line, sizeof line, output)) {
    const char* refs = std::strstr(line, "I   refs:");
    if (!refs) continue;
    std::string digits;
    for (const char* c = refs + std::strlen("I   refs:"); *c; ++c)
      if (*c >= '0' && *c <= '9') digits += *c;
    count = digits.empty() ? 0.0 : std::stod(digits);
  }
  return pclose(output) == 0 ? count : 0.0;
}

// The instructions of our read of `path` alone: those of a process that reads nothing less.
double ReadInstructions(const char* self, const std::string& path) {
  const double read = CountInstructions(self, "ours", path);
  const double idle = CountInstructions(self, "none", path);
  return read > idle && idle > 0.0 ? read - idle : 0.0;
}

std::string Millions(double count) { return count > 0.0 ? Number(count / 1e6, "%.0f") : "n/a"; }

// What writing to memory costs a fresh process, in seconds per megabyte (10^6 bytes; the medians of
// `rounds`): memory it is the first to touch since the machine settled, or (`reused`) memory
// another process freed just before it started.
constexpr int kTouchedMebibytes = 256;

double MemoryCost(const char* self, const char* way, int rounds, bool reused) {
  const std::string size = std::to_string(kTouchedMebibytes);
  std::vector<double> seconds;
  for (int round = 0; round < rounds; ++round) {
    Settle();
    if (reused) RunChild(self, way, size);
    seconds.push_back(RunChild(self, way, size).seconds);
  }
  Settle();
  const double idle = RunChild(self, "none", size).seconds;
  return std::max(0.0, Median(seconds) - idle) / (kTouchedMebibytes * 1048576.0 / 1e6);
}

void PrintMemoryCost(const char* self, int rounds) {
  std::printf("| pages | ms per MB, memory untouched since the machine settled | ms per MB, memory freed just before |\n");
  std::printf("|---|---|---|\n");
  const struct {
    const char* way;
    const char* pages;
  } kinds[] = {{"touch-huge", "2 MB"}, {"touch-small", "4 KB"}};
  for (const auto& kind : kinds)
    std::printf("| %s | %.2f | %.2f |\n", kind.pages, MemoryCost(self, kind.way, rounds, false) * 1e3,
                MemoryCost(self, kind.way, rounds, true) * 1e3);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 4 && std::strcmp(argv[1], "--way") == 0) RunWay(argv[2], argv[3]);
  std::string corpus;
  std::string only;
  int rounds = kDefaultRounds;
  bool keep = false;
  bool scaling = false;
  bool memoryCost = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--only") == 0 && i + 1 < argc)
      only = argv[++i];
    else if (std::strcmp(argv[i], "--rounds") == 0 && i + 1 < argc)
      rounds = std::max(1, std::atoi(argv[++i]));
    else if (std::strcmp(argv[i], "--settle") == 0 && i + 1 < argc)
      gSettleSeconds = std::max(0.0, std::atof(argv[++i]));
    else if (std::strcmp(argv[i], "--memory-cost") == 0)
      memoryCost = true;
    else if (std::strcmp(argv[i], "--keep") == 0)
      keep = true;
    else if (std::strcmp(argv[i], "--scaling") == 0)
      scaling = true;
    else
      corpus = argv[i];
  }
  if (memoryCost) {
    PrintMemoryCost(argv[0], rounds);
    return 0;
  }
  std::vector<std::string> ways = {"sax", "tree", "ours"};
#ifdef ZYL_HAVE_PEER
  ways.push_back("peer");
#endif
  const bool withPeer = ways.size() == 4;

  std::vector<Document> documents;
  int index = 0;
  for (const GeneratedKind& kind : GeneratedKinds())
    if (std::string(kind.name).find(only) != std::string::npos)
      documents.push_back(
          {kind.name, zylbench::WriteTemporary("compare-" + std::to_string(index++) + ".dae", kind.make(4)), true});
  for (const Document& document : CorpusDocuments(corpus))
    if (document.name.find(only) != std::string::npos) documents.push_back(document);

  // What only touching the scene's memory, in the pages the kit asks for, costs a fresh process.
  const double secondsPerMegabyte =
      MemoryCost(argv[0], zylsdk::HugePagesWanted() ? "touch-huge" : "touch-small", rounds, false);
  std::printf("| document | MB | SAX limit s | libxml2 tree s | ours s | peer s | ours / SAX | peer / ours "
              "| SAX MB | tree MB | ours MB | peer MB | scene MB | ours MB / scene | scene memory s | "
              "scene memory / SAX |\n");
  std::printf("|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|\n");
  for (const Document& document : documents) {
    const double size = static_cast<double>(fs::file_size(document.path)) / 1e6;
    const std::vector<Measurement> m = MeasureWays(argv[0], ways, document.path, rounds);
    const Measurement& sax = m[0];
    const Measurement& tree = m[1];
    const Measurement& ours = m[2];
    const Measurement peer = withPeer ? m[3] : Measurement();
    const double sceneMemorySeconds = ours.sceneMegabytes * secondsPerMegabyte;
    std::printf("| %s | %.1f | %s | %s | %s | %s | %s | %s | %s | %s | %s | %s | %.0f | %s | %.3f | %s |\n",
                document.name.c_str(),
                size, Cell(sax, false).c_str(), Cell(tree, false).c_str(), Cell(ours, false).c_str(),
                Cell(peer, false).c_str(), Ratio(ours.seconds, sax.seconds).c_str(),
                peer.available ? Ratio(peer.seconds, ours.seconds).c_str() : "n/a", Cell(sax, true).c_str(),
                Cell(tree, true).c_str(), Cell(ours, true).c_str(), Cell(peer, true).c_str(), ours.sceneMegabytes,
                Ratio(ours.megabytes, ours.sceneMegabytes).c_str(), sceneMemorySeconds,
                Ratio(sceneMemorySeconds, sax.seconds).c_str());
    std::fflush(stdout);
  }

  if (scaling) {
    std::printf("\n| generated kind | quarter: ours s | whole: ours s | time growth for 4 x the input "
                "| quarter: million instructions | whole: million instructions | instruction growth |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    for (const GeneratedKind& kind : GeneratedKinds()) {
      if (std::string(kind.name).find(only) == std::string::npos) continue;
      const std::string quarter = zylbench::WriteTemporary("compare-quarter.dae", kind.make(1));
      const std::string whole = zylbench::WriteTemporary("compare-whole.dae", kind.make(4));
      const double small = MeasureWays(argv[0], {"ours"}, quarter, rounds)[0].seconds;
      const double large = MeasureWays(argv[0], {"ours"}, whole, rounds)[0].seconds;
      const double smallCount = ReadInstructions(argv[0], quarter);
      const double largeCount = ReadInstructions(argv[0], whole);
      std::printf("| %s | %.3f | %.3f | %s | %s | %s | %s |\n", kind.name, small, large, Ratio(large, small).c_str(),
                  Millions(smallCount).c_str(), Millions(largeCount).c_str(),
                  smallCount > 0.0 && largeCount > 0.0 ? Ratio(largeCount, smallCount).c_str() : "n/a");
      std::fflush(stdout);
      std::remove(quarter.c_str());
      std::remove(whole.c_str());
    }
  }
  for (const Document& document : documents)
    if (document.generated && !keep) std::remove(document.path.c_str());
  return 0;
}
