// Files written to break a reader: 100 MB of nesting, documents cut short, binary data. Each
// read must end in a clean failure (the parse message, nothing else) within a second and
// without taking much memory.

#include <chrono>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "tests/reader/reader_file_test.h"

namespace {

using zyltest::Collada;
using zyltest::Messages;
using zyltest::PeakResidentKilobytes;
using zyltest::ParseFailure;
using zyltest::TempFile;

constexpr double kSecondsAllowed = 1.0;
constexpr long kKilobytesAllowed = 100 * 1024;

struct TimedRead {
  zyldae::ReadResult read;
  double seconds = 0.0;
  long grownKilobytes = 0;
};

TimedRead ReadFile(const std::string& path) {
  TimedRead timed;
  const long before = PeakResidentKilobytes();
  const auto start = std::chrono::steady_clock::now();
  timed.read = zyldae::ReadDocument(path.c_str());
  timed.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  timed.grownKilobytes = PeakResidentKilobytes() - before;
  // These files hold no numbers worth the name: only the structure is checked.
  zyltest::ExpectSceneInvariants(timed.read, zyltest::InvariantChecks{false});
  return timed;
}

// The read failed with the parse message alone, quickly and in little memory.
void ExpectCleanFailure(const TimedRead& timed, const std::string& what) {
  EXPECT_TRUE(timed.read.opened) << what;
  EXPECT_FALSE(timed.read.ok) << what;
  EXPECT_EQ(Messages(timed.read), std::vector<std::string>{ParseFailure()}) << what;
  EXPECT_LT(timed.seconds, kSecondsAllowed) << what;
  EXPECT_LT(timed.grownKilobytes, kKilobytesAllowed) << what;
}

// Writes `head`, then `unit` until the file holds `bytes`, in chunks, so that the test itself
// never holds the whole file in memory.
void WriteRepeated(const std::string& path, const std::string& head, const std::string& unit, size_t bytes) {
  std::ofstream out(path, std::ios::binary);
  out << head;
  std::string chunk;
  while (chunk.size() < (1u << 20)) chunk += unit;
  for (size_t written = head.size(); written < bytes; written += chunk.size()) out << chunk;
}

const char* const kSceneHead =
    "<?xml version=\"1.0\"?>\n<COLLADA version=\"1.4.1\"><asset/><library_visual_scenes><visual_scene id=\"vs\">";

TEST(HostileInput, AHundredMegabytesOfNestedNodesFailFastAndSmall) {
  TempFile file("");
  WriteRepeated(file.Path(), kSceneHead, "<node>", 100u << 20);
  ExpectCleanFailure(ReadFile(file.Path()), "nested nodes");
}

TEST(HostileInput, AHundredMegabytesOfNestedUnknownElementsFailFastAndSmall) {
  TempFile file("");
  WriteRepeated(file.Path(), "<?xml version=\"1.0\"?>\n<COLLADA version=\"1.4.1\"><asset>", "<a>", 100u << 20);
  ExpectCleanFailure(ReadFile(file.Path()), "nested elements");
}

TEST(HostileInput, NodesNestedAsDeepAsTheParserAllowsRead) {
  constexpr int kDepth = 2000;
  std::string nodes;
  for (int i = 0; i < kDepth; ++i) nodes += "<node id=\"n" + std::to_string(i) + "\">";
  for (int i = 0; i < kDepth; ++i) nodes += "</node>";
  TempFile file(Collada("<library_visual_scenes><visual_scene id=\"vs\">" + nodes +
                        "</visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene>"));
  TimedRead timed = ReadFile(file.Path());
  ASSERT_TRUE(timed.read.ok);
  const zylsdk::KZylNode* node = timed.read.scene->GetRootNode();
  int depth = 0;
  while (node->GetChildCount() == 1) node = node->GetChild(0), ++depth;
  EXPECT_EQ(depth, kDepth);
  EXPECT_EQ(node->GetName(), "n1999");
}

TEST(HostileInput, EveryCutOfTheExampleSceneFailsCleanly) {
  std::ifstream in(std::string(ZYL_SOURCE_DIR) + "/examples/scene.dae", std::ios::binary);
  const std::string whole((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  ASSERT_GT(whole.size(), 1000u);
  // Cut before the root element's end tag, at every 1/32 of the way and at a few bytes.
  const size_t rootEnd = whole.rfind("</COLLADA>");
  ASSERT_NE(rootEnd, std::string::npos);
  std::vector<size_t> cuts = {1, 2, 5, 38, rootEnd, rootEnd + 5};
  for (size_t k = 1; k < 32; ++k) cuts.push_back(rootEnd * k / 32);
  for (size_t cut : cuts) {
    TempFile file(whole.substr(0, cut));
    ExpectCleanFailure(ReadFile(file.Path()), "cut at " + std::to_string(cut));
  }
}

TEST(HostileInput, EmptyAndBinaryFilesFailCleanly) {
  std::mt19937 random(20261121);
  std::string noise(1u << 20, '\0');
  for (char& c : noise) c = static_cast<char>(random() & 0xff);
  const std::vector<std::pair<std::string, std::string>> files = {
      {"empty", ""},
      {"zero bytes", std::string(1u << 20, '\0')},
      {"random bytes", noise},
      {"random bytes after an XML declaration", "<?xml version=\"1.0\"?>\n" + noise},
      {"a NUL inside a document", Collada(std::string("<library_geometries>") + '\0' + "</library_geometries>")},
      {"PNG signature", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16)},
      {"UTF-16 byte order mark and garbage", std::string("\xff\xfe<\0C\0\xd8\0", 8)},
  };
  for (const auto& [what, contents] : files) {
    TempFile file(contents);
    ExpectCleanFailure(ReadFile(file.Path()), what);
  }
}

}  // namespace
