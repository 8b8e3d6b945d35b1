// The dump written as the scene is walked is, byte for byte, the dump built as a JSON value
// and then written: on the example, on every fifteenth corpus document, in both reading
// modes, brief or not; and the tool's own output, for one file and for several.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/corpus.h"
#include "tests/support/documents.h"
#include "tools/zyldae/json_writer.h"
#include "tools/zyldae/scene_dump.h"

namespace {

const std::string kExample = std::string(ZYL_SOURCE_DIR) + "/examples/scene.dae";

std::string Streamed(const zyldae::ReadResult& read, const std::string& name, bool brief) {
  std::ostringstream text;
  {
    zyldae::JsonStreamWriter writer(text);
    zyldae::DumpRead(read, name.c_str(), brief, writer);
  }
  return text.str();
}

std::string Built(const zyldae::ReadResult& read, const std::string& name, bool brief) {
  std::ostringstream text;
  zyldae::WriteJson(text, zyldae::DumpRead(read, name.c_str(), brief));
  return text.str();
}

void ExpectStreamedAsBuilt(const std::string& path) {
  for (const zyldae::ReadSettings& settings : zyltest::BothModes()) {
    const zyldae::ReadResult read = zyldae::ReadDocument(path.c_str(), settings);
    ASSERT_TRUE(read.opened) << path;
    for (bool brief : {false, true}) {
      const std::string streamed = Streamed(read, path, brief);
      EXPECT_GT(streamed.size(), 100u);
      EXPECT_EQ(streamed, Built(read, path, brief)) << path << (settings.complete ? " complete" : "") << (brief ? " brief" : "");
    }
  }
}

TEST(DumpStreamTest, ExampleStreamsAsBuilt) { ExpectStreamedAsBuilt(kExample); }

TEST(DumpStreamTest, CorpusDocumentsStreamAsBuilt) {
  const std::vector<std::string> documents = zyltest::CorpusDocuments();
  if (documents.empty()) GTEST_SKIP() << "no corpus";
  for (size_t i = 0; i < documents.size(); i += 15) ExpectStreamedAsBuilt(std::string(ZYL_CORPUS_DIR) + "/" + documents[i]);
}

TEST(DumpStreamTest, NonFiniteNumbersAndOddTextsStreamAsBuilt) {
  // A node whose translation and scale are not finite, with names that need escaping.
  const std::string document = zyltest::Collada(
      "<library_visual_scenes><visual_scene id=\"vs\"><node id=\"n\" name=\"a&quot;b\\c&#9;\">"
      "<translate>1e400 -1e400 0</translate><scale>1 1 1</scale></node><node id=\"e\" name=\"\"/>"
      "</visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene>");
  zyltest::TempFile file(document);
  const zyldae::ReadResult read = zyldae::ReadDocument(file.Path().c_str(), {});
  ASSERT_TRUE(read.opened);
  const std::string streamed = Streamed(read, "x\xff.dae", false);
  EXPECT_NE(streamed.find("\"inf\""), std::string::npos);
  EXPECT_NE(streamed.find("\\u00ff"), std::string::npos);
  EXPECT_EQ(streamed, Built(read, "x\xff.dae", false));
}

TEST(DumpStreamTest, WriterLaysOutAsTheDumpDoes) {
  zyldae::Json value = zyldae::Json::object();
  value["numbers"] = {1, 2.5, nullptr};
  value["mixed"] = {1, zyldae::Number(std::numeric_limits<double>::infinity())};
  value["empty"] = zyldae::Json::array();
  value["none"] = zyldae::Json::object();
  value["nested"] = {{"t", true}, {"s", "q\"\n"}};
  std::ostringstream text;
  zyldae::WriteJson(text, value);
  EXPECT_EQ(text.str(),
            "{\n"
            "  \"numbers\": [1, 2.5, null],\n"
            "  \"mixed\": [\n"
            "    1,\n"
            "    \"inf\"\n"
            "  ],\n"
            "  \"empty\": [],\n"
            "  \"none\": {},\n"
            "  \"nested\": {\n"
            "    \"t\": true,\n"
            "    \"s\": \"q\\\"\\n\"\n"
            "  }\n"
            "}\n");
}

TEST(DumpStreamTest, ToolWritesWhatTheValueWouldBe) {
  const zyldae::ReadResult read = zyldae::ReadDocument(kExample.c_str(), {});
  ASSERT_TRUE(read.opened);

  const zyltest::ToolRun one = zyltest::RunTool("dump " + kExample);
  EXPECT_EQ(one.status, 0);
  EXPECT_EQ(one.out, Built(read, kExample, false));

  const zyltest::ToolRun two = zyltest::RunTool("dump --brief " + kExample + " " + kExample);
  EXPECT_EQ(two.status, 0);
  zyldae::Json both = zyldae::Json::array();
  both.push_back(zyldae::DumpRead(read, kExample.c_str(), true));
  both.push_back(zyldae::DumpRead(read, kExample.c_str(), true));
  std::ostringstream expected;
  zyldae::WriteJson(expected, both);
  EXPECT_EQ(two.out, expected.str());
}

}  // namespace
