// What the default reading passes over without a word, and the complete reading reads, is
// counted: ReadColladaFile gives the counts and `zyldae info` names them.

#include <gtest/gtest.h>

#include <string>

#include "tests/reader/geometry/mesh_xml.h"
#include "tests/support/documents.h"

namespace zyltest {
namespace {

// A mesh with one polygons element, two polylists, a tristrips and a lines element.
std::string MixedPrimitivesDocument() {
  const std::string primitives =
      "<polygons count=\"1\">" + VertexInput() + "<p>0 1 2</p></polygons>"
      "<polylist count=\"1\">" + VertexInput() + "<vcount>3</vcount><p>0 1 2</p></polylist>"
      "<tristrips count=\"1\">" + VertexInput() + "<p>0 1 2 3</p></tristrips>"
      "<polylist count=\"1\">" + VertexInput() + "<vcount>4</vcount><p>0 1 2 3</p></polylist>"
      "<lines count=\"1\">" + VertexInput() + "<p>0 1</p></lines>";
  return Collada("<library_geometries>" + Geometry("mixed", Mesh(SquarePositions() + PositionVertices() + primitives)) +
                 "</library_geometries>"
                 "<library_visual_scenes><visual_scene id=\"world\">"
                 "<node id=\"n\"><instance_geometry url=\"#mixed\"/></node>"
                 "</visual_scene></library_visual_scenes>"
                 "<scene><instance_visual_scene url=\"#world\"/></scene>");
}

TEST(LeftUnread, TheDefaultReadingCountsThePrimitivesItPassesOver) {
  const zyldae::ReadResult read = ReadText(MixedPrimitivesDocument());
  ASSERT_TRUE(read.ok);
  // Lines are left out: no reading of ours holds them.
  ASSERT_EQ(read.leftUnread.size(), 2u);
  EXPECT_EQ(read.leftUnread[0].first.Std(), "polylist primitives");
  EXPECT_EQ(read.leftUnread[0].second, 2);
  EXPECT_EQ(read.leftUnread[1].first.Std(), "tristrips primitives");
  EXPECT_EQ(read.leftUnread[1].second, 1);
}

TEST(LeftUnread, TheCompleteReadingLeavesNothingOfTheseUnread) {
  const zyldae::ReadResult read = ReadText(MixedPrimitivesDocument(), Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_TRUE(read.leftUnread.empty());
}

TEST(LeftUnread, InfoNamesWhatWasLeftAndHowToReadIt) {
  TempFile file(MixedPrimitivesDocument());
  const ToolRun run = RunTool("info " + file.Path());
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("2 polylist primitives not read: use --complete\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("1 tristrips primitives not read: use --complete\n"), std::string::npos) << run.out;
  const ToolRun complete = RunTool("info --complete " + file.Path());
  EXPECT_EQ(complete.out.find("not read: use --complete"), std::string::npos) << complete.out;
}

}  // namespace
}  // namespace zyltest
