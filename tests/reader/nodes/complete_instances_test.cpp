// The complete reading of instances: instance_node copies the node it names, a node's further
// instances go to child nodes, and a controller's source may name another controller.

#include <gtest/gtest.h>

#include "tests/reader/geometry/complete_scene_xml.h"
#include "tests/reader/geometry/skin_morph_xml.h"

namespace zyltest {
namespace {

const std::string kTriangleGeometry =
    Geometry("g", Mesh(SquarePositions() + PositionVertices() + "<triangles>" + VertexInput() +
                       "<p>0 1 2</p></triangles>"));

std::string SceneOf(const std::string& libraries, const std::string& nodes) {
  return Collada(libraries + "<library_geometries>" + kTriangleGeometry +
                 "</library_geometries><library_visual_scenes><visual_scene id=\"vs\">" + nodes +
                 "</visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene>");
}

// Name, attribute type and child count of each node below the root, depth first.
std::string Outline(const zyldae::Json& node) {
  std::string text = node["name"].get<std::string>() + ":" +
                     (node["attribute"].is_null() ? "none" : node["attribute"]["type"].get<std::string>());
  if (!node["children"].empty()) {
    text += "(";
    for (const zyldae::Json& child : node["children"]) text += Outline(child) + " ";
    text.back() = ')';
  }
  return text;
}

std::string SceneOutline(const zyldae::Json& dump) {
  std::string text;
  for (const zyldae::Json& node : dump["scene"]["root"]["children"]) text += Outline(node) + " ";
  return text;
}

const std::string kLibraryNodes =
    "<library_nodes><node id=\"part\"><translate>1 2 3</translate><instance_geometry url=\"#g\"/>"
    "<node id=\"leaf\"/></node></library_nodes>";

TEST(CompleteInstances, InstanceNodeCopiesTheNodeTreeItNames) {
  const std::string document =
      SceneOf(kLibraryNodes, "<node id=\"a\"><instance_node url=\"#part\"/></node>"
                             "<node id=\"b\"><instance_node url=\"#part\"/></node>");
  const zyldae::Json dump = DumpText(document, false, Complete());
  ASSERT_TRUE(dump["ok"]);
  EXPECT_EQ(SceneOutline(dump), "a:null(part:mesh(leaf:null)) b:null(part1:mesh(leaf1:null)) ");
  const zyldae::Json& copy = dump["scene"]["root"]["children"][1]["children"][0];
  EXPECT_EQ(copy["translation"], zyldae::Json::parse("[1,2,3,1]"));
  EXPECT_FALSE(ReadText(document).ok);
}

TEST(CompleteInstances, ACycleOfInstanceNodesIsNotFollowed) {
  const zyldae::ReadResult read = ReadText(
      SceneOf("<library_nodes><node id=\"loop\"><instance_node url=\"#loop\"/></node></library_nodes>",
              "<node id=\"a\"><instance_node url=\"#loop\"/></node>"),
      Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: instance_node cycle through #loop not followed"), 1);
}

TEST(CompleteInstances, InstanceNodeOfAnotherDocumentIsNotFollowed) {
  const zyldae::ReadResult read =
      ReadText(SceneOf("", "<node id=\"a\"><instance_node url=\"parts.dae#part\"/></node>"), Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: instance_node of another document not followed: parts.dae#part"), 1);
}

TEST(CompleteInstances, FurtherInstancesOfANodeGoToChildNodes) {
  const zyldae::Json dump = DumpText(
      SceneOf("", "<node id=\"a\"><instance_geometry url=\"#g\"/><instance_geometry url=\"#g\"/>"
                  "<node id=\"kid\"/><instance_geometry url=\"#g\"/></node>"),
      false, Complete());
  ASSERT_TRUE(dump["ok"]);
  EXPECT_EQ(SceneOutline(dump), "a:mesh(a1:mesh kid:null a2:mesh) ");
}

TEST(CompleteInstances, ASkinOfAMorphDeformsTheMorphsGeometry) {
  const std::string controllers =
      "<library_controllers>" +
      Controller("morph", Morph("g", "g", "0.5")) +
      Controller("skin", "<skin source=\"morph\">" + NameSource("joints", "j") + MatrixSource("ibm", Translation(0, 0, 0)) +
                             FloatSource("weights", "1", 1) + JointsElement() + VertexWeights("1 1 1 0", "0 0 0 0 0 0") +
                             "</skin>") +
      "</library_controllers>";
  const zyldae::Json dump =
      DumpText(SceneOf(controllers, "<node id=\"j\" type=\"JOINT\"/><node id=\"a\"><instance_controller url=\"#skin\">"
                                    "<skeleton>#j</skeleton></instance_controller></node>"),
               false, Complete());
  ASSERT_TRUE(dump["ok"]);
  const zyldae::Json& mesh = dump["scene"]["root"]["children"][1]["attribute"];
  EXPECT_EQ(mesh["type"], "mesh");
  EXPECT_EQ(mesh["skins"][0]["clusters"][0]["link"]["name"], "j");
  EXPECT_EQ(mesh["shapes"].size(), 1u);
}

}  // namespace
}  // namespace zyltest
