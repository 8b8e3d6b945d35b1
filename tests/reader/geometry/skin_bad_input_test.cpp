// Faulty skins read end to end: each gives its message and the read fails or goes on as it
// should, without reading outside any list (the sanitizer build runs these too).

#include <gtest/gtest.h>

#include "tests/reader/geometry/skin_morph_xml.h"
#include "tests/reader/nodes/scene_documents.h"

namespace zyltest {
namespace {

using namespace zylsdk;

const std::string kJoints = "<node id=\"a\" type=\"JOINT\"/><node id=\"b\" type=\"JOINT\"/>";
const std::string kBody = "<node id=\"body\"><instance_controller url=\"#skin\"/></node>";
const std::string kMatrices = Translation(0, -1, 0) + Translation(0, -2, 0);

// A document whose controller "skin" has the skin `skin`, over the triangle "geo".
std::string SkinDocument(const std::string& skin) {
  return SceneDocument("<library_geometries>" + TriangleGeometry("geo", "0 0 0  1 0 0  0 1 0") +
                           "</library_geometries><library_controllers>" + Controller("skin", skin) +
                           "</library_controllers>",
                       kJoints + kBody);
}

const KZylSkin* BodySkin(const zyldae::ReadResult& read) {
  KZylNode* body = read.scene->FindNodeByName("body");
  KZylGeometry* geometry = body ? body->GetGeometry() : nullptr;
  return geometry ? static_cast<const KZylSkin*>(geometry->GetDeformer(0, KZylDeformer::eSkin)) : nullptr;
}

TEST(SkinBadInput, MoreJointsThanMatricesFailTheRead) {
  const zyldae::ReadResult read =
      ReadText(SkinDocument(Skin("geo", "a b c", kMatrices, "1", VertexWeights("1", "0 0"))));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(
      CountMessage(read, "ERROR: in controller, number of joints 3 is different than number of bind pose matrices 2"),
      1);
}

TEST(SkinBadInput, MissingJointsOrVertexWeightsFailTheRead) {
  const std::string sources =
      NameSource("joints", "a b") + MatrixSource("ibm", kMatrices) + FloatSource("weights", "1", 1);
  const zyldae::ReadResult noJoints =
      ReadText(SkinDocument("<skin source=\"#geo\">" + sources + VertexWeights("1", "0 0") + "</skin>"));
  EXPECT_FALSE(noJoints.ok);
  EXPECT_EQ(CountMessage(noJoints, "ERROR: <joints> node not found in controller\n"), 1);

  const zyldae::ReadResult noWeights =
      ReadText(SkinDocument("<skin source=\"#geo\">" + sources + JointsElement() + "</skin>"));
  EXPECT_FALSE(noWeights.ok);
  EXPECT_EQ(CountMessage(noWeights, "ERROR: <vertex_weights> node not found in controller\n"), 1);
}

TEST(SkinBadInput, JointAndWeightIndicesOutOfRange) {
  // Joints -1, 2 and 2147483647 match no cluster; weight index 9 reads as weight 0.
  const zyldae::ReadResult read = ReadText(
      SkinDocument(Skin("geo", "a b", kMatrices, "0.5 1", VertexWeights("2 2 1", "-1 0 0 1  2 0 1 9  2147483647 0"))));
  ASSERT_TRUE(read.ok);
  const KZylSkin* skin = BodySkin(read);
  ASSERT_NE(skin, nullptr);
  ASSERT_EQ(skin->GetClusterCount(), 2);
  EXPECT_EQ(skin->GetCluster(0)->GetControlPointIndices().Std(), (std::vector<int>{0}));
  EXPECT_EQ(skin->GetCluster(0)->GetControlPointWeights().Std(), (std::vector<double>{1}));
  EXPECT_EQ(skin->GetCluster(1)->GetControlPointIndices().Std(), (std::vector<int>{1}));
  EXPECT_EQ(skin->GetCluster(1)->GetControlPointWeights().Std(), (std::vector<double>{0}));
}

TEST(SkinBadInput, TextThatIsNoNumbersWeighsNothing) {
  const zyldae::ReadResult read =
      ReadText(SkinDocument(Skin("geo", "a b", kMatrices, "1", VertexWeights("x y", "joint weight"))));
  ASSERT_TRUE(read.ok);
  const KZylSkin* skin = BodySkin(read);
  ASSERT_NE(skin, nullptr);
  ASSERT_EQ(skin->GetClusterCount(), 2);
  EXPECT_EQ(skin->GetCluster(0)->GetControlPointIndicesCount(), 0);
  EXPECT_EQ(skin->GetCluster(1)->GetControlPointIndicesCount(), 0);
}

TEST(SkinBadInput, AMissingTargetGeometryFailsTheInstancingNode) {
  std::string skin = Skin("ghost", "a b", kMatrices, "1", VertexWeights("1", "0 0"));
  const zyldae::ReadResult read = ReadText(SkinDocument(skin));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(CountMessage(read, "ERROR: Library not found for controller target: #ghost"), 1);
}

TEST(SkinBadInput, AnUnknownControllerFailsTheInstancingNode) {
  const std::string document = SceneDocument("", "<node id=\"body\"><instance_controller url=\"#nope\"/></node>");
  const zyldae::ReadResult read = ReadText(document);
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(CountMessage(read, "ERROR: Library not found: #nope"), 1);
}

TEST(SkinBadInput, EveryElementLeftOutGivesAnOutcomeAndNoCrash) {
  // The full skin, then the same skin without each of its elements in turn.
  const std::vector<std::string> parts = {
      "<bind_shape_matrix>" + Translation(0, 0, 1) + "</bind_shape_matrix>",
      NameSource("joints", "a b"),
      MatrixSource("ibm", kMatrices),
      FloatSource("weights", "0.5 1", 1),
      JointsElement(),
      VertexWeights("2 1", "0 0 1 1 1 0"),
  };
  for (size_t left = 0; left <= parts.size(); ++left) {
    std::string skin = "<skin source=\"#geo\">";
    for (size_t i = 0; i < parts.size(); ++i)
      if (i != left) skin += parts[i];
    const zyldae::ReadResult read = ReadText(SkinDocument(skin + "</skin>"));
    bool error = false;
    for (const std::string& message : Messages(read)) error = error || message.rfind("ERROR: ", 0) == 0;
    // Only the bind shape matrix may be left out.
    const bool optional = left == 0 || left == parts.size();
    EXPECT_EQ(read.ok, optional) << "without part " << left;
    EXPECT_EQ(error, !optional) << "without part " << left;
  }
}

}  // namespace
}  // namespace zyltest
