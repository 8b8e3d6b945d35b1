// The tool's exit statuses and what it writes for each: files it cannot open, files that are
// not XML, documents whose walk fails, and documents that read.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/documents.h"

namespace {

using zyltest::RunTool;
using zyltest::TempFile;

int Lines(const std::string& text) { return static_cast<int>(std::count(text.begin(), text.end(), '\n')); }

TEST(ZyldaeExitStatus, AMissingFileGivesTwoAndOneLineInBothModes) {
  for (const char* command : {"info", "dump", "dump --brief"}) {
    zyltest::ToolRun run = RunTool(std::string(command) + " /nonexistent/box.dae");
    EXPECT_EQ(run.status, 2) << command;
    EXPECT_TRUE(run.out.empty()) << command;
    EXPECT_EQ(Lines(run.err), 1) << command << ": " << run.err;
    EXPECT_NE(run.err.find("/nonexistent/box.dae"), std::string::npos) << command;
  }
}

TEST(ZyldaeExitStatus, ANonXmlFileGivesOneWithTheParseNotification) {
  TempFile file("this is not XML");
  zyltest::ToolRun dump = RunTool("dump " + file.Path());
  EXPECT_EQ(dump.status, 1);
  EXPECT_TRUE(dump.err.empty()) << dump.err;  // libxml2 prints nothing of its own
  zyldae::Json json = zyldae::Json::parse(dump.out);
  EXPECT_EQ(json["ok"], false);
  EXPECT_EQ(json["lastError"]["id"], 0);
  EXPECT_EQ(json["lastError"]["text"], "Unable to parse xml/dae file\n");
  EXPECT_EQ(json["errorText"], "Unable to parse xml/dae file\n");
  ASSERT_EQ(json["notifications"].size(), 1u);
  EXPECT_EQ(json["notifications"][0]["code"], 6);
  EXPECT_EQ(json["notifications"][0]["text"], "ERROR: Unable to parse xml/dae file\n");

  zyltest::ToolRun info = RunTool("info " + file.Path());
  EXPECT_EQ(info.status, 1);
  EXPECT_NE(info.out.find("ERROR: Unable to parse xml/dae file"), std::string::npos);
  EXPECT_EQ(Lines(info.err), 1) << info.err;  // where the XML went wrong
}

TEST(ZyldaeExitStatus, AFailedWalkGivesOneWithItsMessagesAndTheSceneSoFar) {
  TempFile file(zyltest::Collada("<scene/><extra/>"));
  zyltest::ToolRun run = RunTool("dump " + file.Path());
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.err.empty()) << run.err;
  zyldae::Json json = zyldae::Json::parse(run.out);
  EXPECT_EQ(json["ok"], false);
  ASSERT_EQ(json["notifications"].size(), 2u);
  EXPECT_EQ(json["notifications"][0]["text"], "ERROR: extra structure at the end of the main structure: <extra>");
  EXPECT_EQ(json["notifications"][1]["text"], "ERROR: Unable to parse xml/dae file\n");
  EXPECT_TRUE(json["scene"].is_object());
  EXPECT_TRUE(json["scene"]["takes"].empty());  // no take after a failed read

  // The XML is well formed: info has nothing to explain on standard error.
  zyltest::ToolRun info = RunTool("info " + file.Path());
  EXPECT_EQ(info.status, 1);
  EXPECT_TRUE(info.err.empty()) << info.err;
}

TEST(ZyldaeExitStatus, AReadableDocumentGivesZero) {
  TempFile file(zyltest::Collada("<library_nodes/>", "1.4.1"));
  zyltest::ToolRun run = RunTool("dump --brief " + file.Path());
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(run.err.empty()) << run.err;
  zyldae::Json json = zyldae::Json::parse(run.out);
  EXPECT_EQ(json["ok"], true);
  EXPECT_EQ(json["lastError"]["id"], 0);
  EXPECT_EQ(json["errorText"], "");
  ASSERT_EQ(json["notifications"].size(), 1u);
  EXPECT_EQ(json["notifications"][0]["text"], "Warning: library type not supported: library_nodes");
  EXPECT_EQ(json["scene"]["currentTake"], "Take 001");
  EXPECT_EQ(RunTool("info " + file.Path()).status, 0);
}

TEST(ZyldaeExitStatus, AMissingFileArgumentIsAUsageError) {
  EXPECT_EQ(RunTool("dump").status, 2);
  EXPECT_EQ(RunTool("info").status, 2);
}

}  // namespace
