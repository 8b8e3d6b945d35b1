// The complete reading of a document's structure: libraries wherever they stand, the asset
// wherever it stands (or defaults), unknown elements skipped with one warning each.

#include <gtest/gtest.h>

#include "tests/reader/geometry/complete_scene_xml.h"

namespace zyltest {
namespace {

const std::string kGeometries =
    "<library_geometries>" +
    Geometry("g", Mesh(SquarePositions() + PositionVertices() + "<triangles>" + VertexInput() +
                       "<p>0 1 2</p></triangles>")) +
    "</library_geometries>";
const std::string kVisualScenes =
    "<library_visual_scenes><visual_scene id=\"vs\"><node id=\"n\"><instance_geometry url=\"#g\"/></node>"
    "</visual_scene></library_visual_scenes>";
const std::string kScene = "<scene><instance_visual_scene url=\"#vs\"/></scene>";

std::string Document(const std::string& body) {
  return "<?xml version=\"1.0\"?><COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" version=\"1.4.1\">" +
         body + "</COLLADA>";
}

int PolygonsOfFirstNode(const zyldae::Json& dump) { return FirstNodeAttribute(dump)["polygonCount"]; }

TEST(CompleteStructure, LibrariesMayFollowWhatUsesThem) {
  const std::string document = Document("<asset/>" + kScene + kVisualScenes + kGeometries);
  const zyldae::Json dump = DumpText(document, false, Complete());
  ASSERT_TRUE(dump["ok"]);
  EXPECT_EQ(PolygonsOfFirstNode(dump), 1);
  EXPECT_FALSE(ReadText(document).ok);
}

TEST(CompleteStructure, ADocumentWithoutAssetReadsWithDefaultsAndAWarning) {
  const zyldae::ReadResult read = ReadText(Document(kGeometries + kVisualScenes + kScene), Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: the document has no <asset>: default axis system and unit"), 1);
}

TEST(CompleteStructure, AMisplacedAssetIsReadWhereItStands) {
  const std::string document =
      Document(kGeometries + "<asset><unit meter=\"0.01\"/><up_axis>Z_UP</up_axis></asset>" + kVisualScenes + kScene);
  const zyldae::ReadResult read = ReadText(document, Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: <asset> is not the first element: read where it stands"), 1);
  const zyldae::Json dump = DumpText(document, false, Complete());
  EXPECT_EQ(dump["scene"]["systemUnit"], 1.0);
  EXPECT_EQ(dump["scene"]["axisSystem"]["up"], 3);
}

TEST(CompleteStructure, UnknownElementsAreSkippedWithOneWarningPerName) {
  const std::string document = Document(
      "<asset/>" + kGeometries +
      "<library_visual_scenes><visual_scene id=\"vs\"><evaluate_scene/><node id=\"n\"><wobble/><wobble/>"
      "<instance_geometry url=\"#g\"/></node></visual_scene></library_visual_scenes>"
      "<scene><instance_visual_scene url=\"#vs\"/><instance_kinematics_scene url=\"#k\"/></scene><after/>");
  const zyldae::ReadResult read = ReadText(document, Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: unknown element <wobble> skipped"), 1);
  EXPECT_EQ(CountMessage(read, "Warning: unknown element <evaluate_scene> skipped"), 1);
  EXPECT_EQ(CountMessage(read, "Warning: unknown element <instance_kinematics_scene> skipped"), 1);
  EXPECT_EQ(CountMessage(read, "Warning: unknown structure in the main structure: <after>"), 1);
  EXPECT_FALSE(ReadText(document).ok);
}

TEST(CompleteStructure, AnUnknownGenericLibraryIsSkipped) {
  const zyldae::ReadResult read =
      ReadText(Document("<asset/><library type=\"TEXTURE\"/>" + kGeometries + kVisualScenes + kScene), Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: unknown element <library> skipped"), 1);
}

TEST(CompleteStructure, AnInstanceOfAMissingElementLeavesItsNodeWithAWarning) {
  const std::string document =
      Document("<asset/>" + kGeometries +
               "<library_visual_scenes><visual_scene id=\"vs\"><node id=\"eye\"><instance_camera url=\"#nowhere\"/>"
               "</node><node id=\"n\"><instance_geometry url=\"#g\"/></node></visual_scene></library_visual_scenes>" +
               kScene);
  const zyldae::ReadResult read = ReadText(document, Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: instance of a missing element not read: #nowhere"), 1);
  EXPECT_EQ(read.scene->GetRootNode()->GetChildCount(), 2);
  const zyldae::ReadResult byDefault = ReadText(document);
  EXPECT_FALSE(byDefault.ok);
  EXPECT_EQ(CountMessage(byDefault, "ERROR: Library not found: #nowhere"), 1);
}

TEST(CompleteStructure, ABindingToAMissingMaterialKeepsThePlaceholder) {
  const std::string document =
      Document("<asset/><library_geometries>" +
               Geometry("g", Mesh(SquarePositions() + PositionVertices() + "<triangles material=\"m\">" +
                                  VertexInput() + "<p>0 1 2</p></triangles>")) +
               "</library_geometries><library_visual_scenes><visual_scene id=\"vs\"><node id=\"n\">"
               "<instance_geometry url=\"#g\"><bind_material><technique_common>"
               "<instance_material symbol=\"m\" target=\"#gone\"/></technique_common></bind_material>"
               "</instance_geometry></node></visual_scene></library_visual_scenes>" +
               kScene);
  const zyldae::ReadResult read = ReadText(document, Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: instance of a missing element not read: #gone"), 1);
  const zyldae::ReadResult byDefault = ReadText(document);
  EXPECT_FALSE(byDefault.ok);
  EXPECT_EQ(CountMessage(byDefault, "ERROR: Library not found: #gone1"), 1);
}

TEST(CompleteStructure, AMeshWithoutVerticesReadsWithoutGeometry) {
  const std::string document =
      Document("<asset/><library_geometries><geometry id=\"g\"><mesh/></geometry></library_geometries>" +
               kVisualScenes + kScene);
  const zyldae::ReadResult read = ReadText(document, Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: mesh of g has no <vertices>: read without geometry"), 1);
  EXPECT_FALSE(ReadText(document).ok);
}

}  // namespace
}  // namespace zyltest
