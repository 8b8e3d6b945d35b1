// The command-line tool: exit statuses, the dump's top level, and the info output.

#include <gtest/gtest.h>

#include <regex>

#include "tests/support/documents.h"

namespace {

using zyltest::RunTool;
using zyltest::TempFile;

const char* const kOldDocument =
    "<?xml version=\"1.0\"?>\n"
    "<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" version=\"1.3.0\">\n"
    "  <asset><contributor><author>Ada</author></contributor><unit meter=\"0.01\"/><up_axis>Z_UP</up_axis></asset>\n"
    "</COLLADA>\n";

TEST(ZyldaeDump, OldFormatDocumentWithAssetOnly) {
  TempFile file(kOldDocument);
  zyltest::ToolRun run = RunTool("dump " + file.Path());
  ASSERT_EQ(run.status, 0) << run.err;
  zyldae::Json dump = zyldae::Json::parse(run.out);
  EXPECT_EQ(dump["dump"], 2);
  EXPECT_EQ(dump["ok"], true);
  ASSERT_EQ(dump["notifications"].size(), 1u);
  EXPECT_EQ(dump["notifications"][0]["code"], 6);
  EXPECT_EQ(dump["notifications"][0]["text"],
            "Warning: Old Collada format (1.3.0). This format is weakly supported and could cause read errors. "
            "There is strong support for Collada format 1.4.*.");
  EXPECT_EQ(dump["scene"]["axisSystem"]["up"], 3);
  EXPECT_EQ(dump["scene"]["axisSystem"]["front"], -2);
  EXPECT_EQ(dump["scene"]["axisSystem"]["coordSystem"], 0);
  EXPECT_EQ(dump["scene"]["systemUnit"], 1.0);
  EXPECT_EQ(dump["scene"]["sceneInfo"]["author"], "Ada");
}

TEST(ZyldaeDump, MissingFileExitsWithTwoAndOneLine) {
  zyltest::ToolRun run = RunTool("dump /nonexistent/file.dae");
  EXPECT_EQ(run.status, 2);
  EXPECT_TRUE(run.out.empty());
  ASSERT_FALSE(run.err.empty());
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1);
}

TEST(ZyldaeDump, NotXmlExitsWithOneAndTheParseError) {
  TempFile file("this is not XML");
  zyltest::ToolRun run = RunTool("dump " + file.Path());
  EXPECT_EQ(run.status, 1);
  zyldae::Json dump = zyldae::Json::parse(run.out);
  EXPECT_EQ(dump["ok"], false);
  ASSERT_EQ(dump["notifications"].size(), 1u);
  EXPECT_EQ(dump["notifications"][0]["text"], "ERROR: Unable to parse xml/dae file\n");
  EXPECT_EQ(dump["notifications"][0]["code"], 6);
}

TEST(ZyldaeInfo, NotWellFormedSaysWhereOnStandardError) {
  TempFile file("<COLLADA version=\"1.4.1\">\n<asset>\n</COLLADA>\n");
  zyltest::ToolRun run = RunTool("info " + file.Path());
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find("ERROR: Unable to parse xml/dae file"), std::string::npos);
  // "<file>:<line>: <libxml2's message>", the line being where the parser gave up.
  EXPECT_TRUE(std::regex_search(run.err, std::regex(file.Path() + ":[0-9]+: .*COLLADA"))) << run.err;
}

TEST(ZyldaeUsage, UnknownCommandIsAUsageError) {
  EXPECT_EQ(RunTool("frobnicate x.dae").status, 2);
  EXPECT_EQ(RunTool("").status, 2);
}

}  // namespace
