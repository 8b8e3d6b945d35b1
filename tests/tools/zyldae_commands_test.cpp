// The tool's command line: usage, --version, standard input, several files, files that cannot
// be read, and what info says about a scene.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>

#include "kit/version.h"
#include "tests/reader/geometry/mesh_xml.h"
#include "tests/support/documents.h"

namespace zyltest {
namespace {

int Lines(const std::string& text) { return static_cast<int>(std::count(text.begin(), text.end(), '\n')); }
bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// A quad and a triangle under a node scaled by 2, itself under a node moved by 10 along X.
std::string PlacedMeshDocument() {
  const std::string polygons =
      "<polygons count=\"2\">" + VertexInput() + "<p>0 1 2 3</p><p>0 1 2</p></polygons>";
  return Collada("<library_geometries>" + Geometry("quad", Mesh(SquarePositions() + PositionVertices() + polygons)) +
                 "</library_geometries>"
                 "<library_visual_scenes><visual_scene id=\"world\">"
                 "<node id=\"moved\"><translate>10 0 0</translate>"
                 "<node id=\"scaled\"><scale>2 2 2</scale><instance_geometry url=\"#quad\"/></node>"
                 "</node></visual_scene></library_visual_scenes>"
                 "<scene><instance_visual_scene url=\"#world\"/></scene>");
}

const char* const kInchesZUp =
    "<?xml version=\"1.0\"?>\n"
    "<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" version=\"1.4.1\">\n"
    "  <asset><unit meter=\"0.0254\" name=\"inch\"/><up_axis>Z_UP</up_axis></asset>\n"
    "</COLLADA>\n";

TEST(ZyldaeCommandLine, NoArgumentsPrintsTheUsage) {
  ToolRun run = RunTool("");
  EXPECT_EQ(run.status, 2);
  EXPECT_TRUE(run.out.empty());
  EXPECT_TRUE(Has(run.err, "Usage")) << run.err;
  EXPECT_TRUE(Has(run.err, "info")) << run.err;
  EXPECT_TRUE(Has(run.err, "dump")) << run.err;
}

TEST(ZyldaeCommandLine, AnUnknownCommandIsNamedAndTheUsageFollows) {
  ToolRun run = RunTool("frobnicate x.dae");
  EXPECT_EQ(run.status, 2);
  EXPECT_TRUE(Has(run.err, "frobnicate")) << run.err;
  EXPECT_TRUE(Has(run.err, "Usage")) << run.err;
}

TEST(ZyldaeCommandLine, VersionIsTheProjectVersion) {
  ToolRun run = RunTool("--version");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, std::string("zyldae ") + ZYLCOLLADA_VERSION_STRING + "\n");
}

TEST(ZyldaeStandardInput, DumpOfStandardInputIsTheDumpOfTheFile) {
  TempFile file(PlacedMeshDocument());
  ToolRun fromFile = RunTool("dump " + file.Path());
  ToolRun fromInput = RunTool("dump - <" + file.Path());
  ASSERT_EQ(fromInput.status, 0) << fromInput.err;
  zyldae::Json byFile = zyldae::Json::parse(fromFile.out);
  zyldae::Json byInput = zyldae::Json::parse(fromInput.out);
  EXPECT_EQ(byInput["file"], "-");
  byInput["file"] = byFile["file"];
  EXPECT_EQ(byInput, byFile);
}

TEST(ZyldaeStandardInput, NotWellFormedInputSaysWhereFromTheOneParse) {
  TempFile file("<COLLADA version=\"1.4.1\">\n");
  ToolRun run = RunTool("info - <" + file.Path());
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(Has(run.out, "ERROR: Unable to parse xml/dae file")) << run.out;
  ASSERT_EQ(Lines(run.err), 1) << run.err;
  // "-:<line>: <libxml2's message>", the line being where the parser gave up.
  EXPECT_TRUE(std::regex_search(run.err, std::regex("^-:[0-9]+: .*COLLADA"))) << run.err;
}

TEST(ZyldaeStandardInput, NamedTwiceIsRefusedTheSecondTime) {
  TempFile file(Collada(""));
  ToolRun run = RunTool("dump - - <" + file.Path());
  EXPECT_EQ(run.status, 2);
  EXPECT_TRUE(Has(run.err, "standard input can be read only once")) << run.err;
  EXPECT_EQ(zyldae::Json::parse(run.out).size(), 1u);
}

TEST(ZyldaeSeveralFiles, InfoPrintsEachThenASummary) {
  TempFile good(Collada(""));
  TempFile bad("not XML");
  ToolRun run = RunTool("info " + good.Path() + " " + bad.Path());
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(Has(run.out, "File: " + good.Path() + "\nRead: ok")) << run.out;
  EXPECT_TRUE(Has(run.out, "File: " + bad.Path() + "\nRead: failed")) << run.out;
  EXPECT_TRUE(Has(run.out, "\n2 files: 1 read, 1 failed, 0 unreadable\n")) << run.out;
}

TEST(ZyldaeSeveralFiles, DumpWritesAnArrayAndTheSummaryOnStandardError) {
  TempFile first(Collada(""));
  TempFile second(PlacedMeshDocument());
  ToolRun run = RunTool("dump --brief " + first.Path() + " " + second.Path());
  EXPECT_EQ(run.status, 0);
  zyldae::Json dumps = zyldae::Json::parse(run.out);
  ASSERT_TRUE(dumps.is_array());
  ASSERT_EQ(dumps.size(), 2u);
  EXPECT_EQ(dumps[0]["file"], first.Path());
  EXPECT_EQ(dumps[1]["file"], second.Path());
  EXPECT_EQ(run.err, "2 files: 2 read, 0 failed, 0 unreadable\n");
}

TEST(ZyldaeUnreadable, ADirectoryExitsWithTwoAndOneLine) {
  const std::string folder = std::filesystem::temp_directory_path().string();
  for (const char* command : {"info ", "dump "}) {
    ToolRun run = RunTool(command + folder);
    EXPECT_EQ(run.status, 2) << command;
    EXPECT_TRUE(run.out.empty()) << command << run.out;
    EXPECT_EQ(run.err, "zyldae: " + folder + " is a directory\n") << command;
  }
}

TEST(ZyldaeUnreadable, TheOtherFilesAreStillReadAndTheStatusIsTwo) {
  TempFile good(Collada(""));
  ToolRun run = RunTool("info /nonexistent/a.dae " + good.Path());
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "zyldae: cannot open /nonexistent/a.dae\n");
  EXPECT_TRUE(Has(run.out, "2 files: 1 read, 0 failed, 1 unreadable")) << run.out;
}

TEST(ZyldaeInfo, NamesTheAxesAndTheUnit) {
  TempFile file(kInchesZUp);
  ToolRun run = RunTool("info " + file.Path());
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(Has(run.out, "Axes: Z up, -Y front, right-handed\n")) << run.out;
  EXPECT_TRUE(Has(run.out, "Unit: 1 inch = 2.54 cm\n")) << run.out;
}

TEST(ZyldaeInfo, CountsTheSceneAndBoundsItInWorldSpace) {
  TempFile file(PlacedMeshDocument());
  ToolRun run = RunTool("info " + file.Path());
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(Has(run.out, "Totals: 2 nodes, 1 mesh, 2 polygons, 3 triangles, 0 materials, 0 textures, 0 skins, "
                           "0 shapes, 0 curves\n"))
      << run.out;
  // The unit square scaled by 2, then moved by 10 along X.
  EXPECT_TRUE(Has(run.out, "Bounding box (world): (10, 0, 0) to (12, 2, 0)\n")) << run.out;
  EXPECT_TRUE(Has(run.out, "4 control points, 2 polygons, 1 layer")) << run.out;
}

TEST(ZyldaeInfo, SaysWhenThereIsNoAnimation) {
  TempFile file(PlacedMeshDocument());
  ToolRun run = RunTool("info " + file.Path());
  EXPECT_TRUE(Has(run.out, "Take: Take 001 (current), no animation\n")) << run.out;
  EXPECT_FALSE(Has(run.out, " s to ")) << run.out;
}

TEST(ZyldaeInfo, AnEmptySceneHasNoBoundingBox) {
  TempFile file(Collada(""));
  ToolRun run = RunTool("info " + file.Path());
  EXPECT_TRUE(Has(run.out, "Bounding box (world): none (no mesh has a point)\n")) << run.out;
}

TEST(ZyldaeDump, CompactIsOneLineWithTheSameContent) {
  TempFile file(PlacedMeshDocument());
  const ToolRun indented = RunTool("dump " + file.Path());
  const ToolRun compact = RunTool("dump --compact " + file.Path());
  ASSERT_EQ(compact.status, 0);
  EXPECT_EQ(Lines(compact.out), 1);
  EXPECT_LT(compact.out.size(), indented.out.size());
  EXPECT_EQ(zyldae::Json::parse(compact.out), zyldae::Json::parse(indented.out));
}

}  // namespace
}  // namespace zyltest
