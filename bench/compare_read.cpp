// Compares reading large documents three ways, each in a process of its own so that each has
// its own peak memory:
//   floor  libxml2's parse of the document, plus converting every number of its arrays with
//          std::from_chars, and nothing else: what any reader of the text must at least do;
//   ours   the whole read through the manager and the reader, as an application does it;
//   peer   Assimp's COLLADA importer without post-processing (when the bench was built with it).
// Every time is the best over five processes, each reading at least three times and more until
// a second has gone by; it includes freeing what was made.
//
//   bench_compare_read [CORPUS_FOLDER] [--only TEXT] [--keep]
//
// --only keeps the documents whose name contains TEXT; --keep leaves the generated documents
// in /tmp (zylbench-compare-N.dae), for a profiler's use.
// Prints a Markdown table (scripts/update-performance-table.sh writes it to
// docs/performance.md). The documents are the corpus files of at least 1 MB, when the folder
// is given and exists, and generated ones: a million-triangle mesh, a 100,000-node scene, a
// 200-joint skin and 1,000 animated nodes.

#include <libxml/tree.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/bench_support.h"
#include "bench/generated_documents.h"
#include "reader/xml_document.h"

#ifdef ZYL_HAVE_PEER
#include <assimp/Importer.hpp>
#include <assimp/scene.h>
#endif

namespace {

namespace fs = std::filesystem;

constexpr int kRepeats = 3;
// Documents are read again until this much time has gone by; the best time is kept.
constexpr double kBudgetSeconds = 1.0;
// Each method is timed in this many processes; the best time is kept.
constexpr int kProcesses = 5;
constexpr uintmax_t kLargeFile = 1000000;

// ---------------------------------------------------------------- the floor

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Converts every number of the text; the sum keeps the work from being optimised away.
template <class Number>
double ConvertNumbers(const char* text) {
  double sum = 0.0;
  const char* end = text + std::strlen(text);
  for (const char* p = text; p < end;) {
    while (p < end && IsSpace(*p)) ++p;
    const char* token = p;
    while (p < end && !IsSpace(*p)) ++p;
    Number value{};
    if (token < p && std::from_chars(token, p, value).ec == std::errc()) sum += static_cast<double>(value);
  }
  return sum;
}

double ConvertArrays(const xmlNode* element) {
  double sum = 0.0;
  std::vector<const xmlNode*> pending{element};
  while (!pending.empty()) {
    const xmlNode* node = pending.back();
    pending.pop_back();
    for (const xmlNode* child = node->children; child; child = child->next)
      if (child->type == XML_ELEMENT_NODE) pending.push_back(child);
    if (node->type != XML_ELEMENT_NODE) continue;
    const char* name = reinterpret_cast<const char*>(node->name);
    bool floats = std::strcmp(name, "float_array") == 0;
    bool integers = std::strcmp(name, "int_array") == 0 || std::strcmp(name, "p") == 0 ||
                    std::strcmp(name, "v") == 0 || std::strcmp(name, "vcount") == 0;
    if (!floats && !integers) continue;
    xmlChar* text = xmlNodeGetContent(node);
    if (!text) continue;
    const char* content = reinterpret_cast<const char*>(text);
    sum += floats ? ConvertNumbers<double>(content) : ConvertNumbers<long>(content);
    xmlFree(text);
  }
  return sum;
}

bool Floor(const std::string& path) {
  xmlDoc* document = xmlReadFile(path.c_str(), nullptr, XML_PARSE_HUGE | XML_PARSE_NONET | XML_PARSE_NOERROR |
                                                        XML_PARSE_NOWARNING);
  if (!document) return false;
  volatile double sum = ConvertArrays(xmlDocGetRootElement(document));
  (void)sum;
  xmlFreeDoc(document);
  return true;
}

// ---------------------------------------------------------------- the peer

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
  double seconds = 0.0;
  double peakMegabytes = 0.0;
};

// Child side: runs one method on the file and prints "ok seconds": the best of many runs, or
// with `once` a single run (whose process then shows the peak memory of one read).
int RunMethod(const std::string& method, const std::string& path, bool once) {
  bool ok = true;
  double seconds = 0.0;
  const int repeats = once ? 1 : kRepeats;
  const double budget = once ? 0.0 : kBudgetSeconds;
  if (method == "floor") {
    seconds = zylbench::BestSeconds(repeats, [&] { ok = Floor(path) && ok; }, budget);
  } else if (method == "ours") {
    seconds = zylbench::BestSeconds(repeats, [&] { ok = zylbench::ReadWhole(path) && ok; }, budget);
#ifdef ZYL_HAVE_PEER
  } else if (method == "peer") {
    seconds = zylbench::BestSeconds(repeats, [&] { ok = Peer(path) && ok; }, budget);
#endif
  } else if (method != "none") {
    return 3;
  }
  std::printf("%d %.9f\n", ok ? 1 : 0, seconds);
  return 0;
}

// Parent side: runs this program again as `MODE METHOD FILE` and reads its output and peak
// memory.
Measurement RunChild(const char* self, const char* mode, const std::string& method, const std::string& path) {
  Measurement result;
  int channel[2];
  if (pipe(channel) != 0) return result;
  pid_t child = fork();
  if (child == 0) {
    dup2(channel[1], STDOUT_FILENO);
    close(channel[0]);
    execl(self, self, mode, method.c_str(), path.c_str(), static_cast<char*>(nullptr));
    _exit(4);
  }
  close(channel[1]);
  char buffer[128] = {};
  ssize_t length = read(channel[0], buffer, sizeof buffer - 1);
  close(channel[0]);
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  int ok = 0;
  if (length > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0 &&
      std::sscanf(buffer, "%d %lf", &ok, &result.seconds) == 2) {
    result.available = true;
    result.ok = ok == 1;
    result.peakMegabytes = static_cast<double>(usage.ru_maxrss) / 1024.0;
  }
  return result;
}

// The best time of many runs in each of a few processes (one process can be slow throughout,
// as where its memory lands matters), and the peak memory of a process that reads once: many
// runs in one process may leave the heap more spread out than one read does.
Measurement Measure(const char* self, const std::string& method, const std::string& path) {
  Measurement timed = RunChild(self, "--run", method, path);
  for (int process = 1; process < kProcesses; ++process) {
    const Measurement again = RunChild(self, "--run", method, path);
    if (again.available && again.seconds < timed.seconds) timed = again;
  }
  const Measurement single = RunChild(self, "--once", method, path);
  timed.peakMegabytes = single.available ? single.peakMegabytes : 0.0;
  timed.available = timed.available && single.available;
  return timed;
}

struct Document {
  std::string name;
  std::string path;
};

std::vector<Document> Documents(const std::string& corpus) {
  std::vector<Document> documents;
  std::error_code error;
  if (!corpus.empty() && fs::is_directory(corpus, error)) {
    for (const auto& entry : fs::recursive_directory_iterator(corpus, error))
      if (entry.is_regular_file() && entry.path().extension() == ".dae" && entry.file_size() >= kLargeFile)
        documents.push_back({fs::relative(entry.path(), corpus).string(), entry.path().string()});
    std::sort(documents.begin(), documents.end(), [](const Document& a, const Document& b) { return a.name < b.name; });
  }
  const std::pair<const char*, std::string> generated[] = {
      {"generated: 1,002,528-triangle mesh", zylbench::MeshDocument(708)},
      {"generated: 100,000 sibling nodes", zylbench::SiblingNodesDocument(100000)},
      {"generated: skin of 200 joints, 100,000 vertices", zylbench::SkinDocument(100000, 200, 1)},
      {"generated: 1,000 nodes x 1,000 keys", zylbench::AnimationDocument(1000, 1000, false)},
  };
  int index = 0;
  for (const auto& [name, text] : generated)
    documents.push_back({name, zylbench::WriteTemporary("compare-" + std::to_string(index++) + ".dae", text)});
  return documents;
}

std::string Cell(const Measurement& m, bool memory) {
  if (!m.available) return "n/a";
  char text[32];
  std::snprintf(text, sizeof text, memory ? "%.0f" : "%.3f", memory ? m.peakMegabytes : m.seconds);
  return std::string(text) + (m.ok ? "" : " (failed)");
}

std::string Ratio(const Measurement& a, const Measurement& b) {
  if (!a.available || !b.available) return "n/a";
  if (b.seconds <= 0.0) return "n/a";
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", a.seconds / b.seconds);
  return text;
}

std::string MemoryRatio(const Measurement& a, const Measurement& b, double baseline) {
  if (!a.available || !b.available || b.peakMegabytes - baseline <= 0.0) return "n/a";
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", (a.peakMegabytes - baseline) / (b.peakMegabytes - baseline));
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 4 && std::strcmp(argv[1], "--run") == 0) return RunMethod(argv[2], argv[3], false);
  if (argc == 4 && std::strcmp(argv[1], "--once") == 0) return RunMethod(argv[2], argv[3], true);
  std::string corpus;
  std::string only;
  bool keep = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--only") == 0 && i + 1 < argc)
      only = argv[++i];
    else if (std::strcmp(argv[i], "--keep") == 0)
      keep = true;
    else
      corpus = argv[i];
  }

  std::vector<Document> documents = Documents(corpus);
  documents.erase(std::remove_if(documents.begin(), documents.end(),
                                 [&](const Document& d) { return d.name.find(only) == std::string::npos; }),
                  documents.end());
  const Measurement baseline = RunChild(argv[0], "--once", "none", documents.empty() ? "" : documents.front().path);
#ifdef ZYL_HAVE_PEER
  const bool withPeer = true;
#else
  const bool withPeer = false;
#endif

  std::printf("| document | MB | floor s | ours s | peer s | ours / floor | peer / ours | floor MB | ours MB | peer MB | "
              "ours / floor memory |\n");
  std::printf("|---|---|---|---|---|---|---|---|---|---|---|\n");
  for (const Document& document : documents) {
    const double size = static_cast<double>(fs::file_size(document.path)) / 1e6;
    const Measurement floor = Measure(argv[0], "floor", document.path);
    const Measurement ours = Measure(argv[0], "ours", document.path);
    const Measurement peer = withPeer ? Measure(argv[0], "peer", document.path) : Measurement();
    std::printf("| %s | %.1f | %s | %s | %s | %s | %s | %s | %s | %s | %s |\n", document.name.c_str(), size,
                Cell(floor, false).c_str(), Cell(ours, false).c_str(), Cell(peer, false).c_str(),
                Ratio(ours, floor).c_str(), Ratio(peer, ours).c_str(), Cell(floor, true).c_str(),
                Cell(ours, true).c_str(), Cell(peer, true).c_str(),
                MemoryRatio(ours, floor, baseline.peakMegabytes).c_str());
    std::fflush(stdout);
  }
  std::printf("\nPeak memory is the largest resident size of a process that reads the document once; the\n"
              "memory ratio subtracts the %.0f MB that the program takes before reading anything.\n",
              baseline.peakMegabytes);
  for (const Document& document : documents)
    if (document.name.rfind("generated:", 0) == 0 && !keep) std::remove(document.path.c_str());
  return 0;
}
