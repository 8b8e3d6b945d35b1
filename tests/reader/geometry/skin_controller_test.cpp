// Skin controllers read on their own: clusters, their weights and matrices, placeholder links,
// the bind pose, and every message of the skin import.

#include <gtest/gtest.h>

#include "tests/reader/geometry/skin_morph_xml.h"
#include "tests/support/reader_fixture.h"

namespace zyltest {
namespace {

using namespace zylsdk;

const std::string kTwoMatrices = Translation(0, -1, 0) + Translation(0, -2, 0);

class SkinControllerTest : public ReaderTest {
 protected:
  const ControllerRecord* Record(const char* id) const { return reader->GetState().controllers.Lookup(id); }

  // Reads the vertex weights of a skin element into fresh clusters.
  bool ReadWeights(const std::string& skin) {
    clusters.Clear();
    return reader->ImportVertexWeightsInController(Parse(skin), clusters);
  }

  static std::vector<int> Indices(const KZylCluster* cluster) { return cluster->GetControlPointIndices().Std(); }
  static std::vector<double> Weights(const KZylCluster* cluster) { return cluster->GetControlPointWeights().Std(); }

  KArrayTemplate<KZylCluster*> clusters;
};

TEST_F(SkinControllerTest, PairsFollowVcountWithOneGroupPerInput) {
  ASSERT_TRUE(ReadWeights("<skin>" + NameSource("joints", "a b") + FloatSource("weights", "0.1 0.2 0.3", 1) +
                          VertexWeights("2 1", "0 0 1 1 0 2") + "</skin>"));
  ASSERT_EQ(clusters.GetCount(), 2);
  EXPECT_EQ(Indices(clusters[0]), (std::vector<int>{0, 1}));
  EXPECT_EQ(Weights(clusters[0]), (std::vector<double>{0.1, 0.3}));
  EXPECT_EQ(Indices(clusters[1]), (std::vector<int>{0}));
  EXPECT_EQ(Weights(clusters[1]), (std::vector<double>{0.2}));
  for (KZylCluster* cluster : clusters) {
    EXPECT_EQ(cluster->GetName(), "");
    EXPECT_EQ(cluster->GetLinkMode(), KZylCluster::eNormalize);
  }
  EXPECT_TRUE(reader->GetStatus());
  // Every cluster is one the reader remembers, in creation order.
  ASSERT_EQ(reader->GetState().clusters.size(), 2u);
  EXPECT_EQ(reader->GetState().clusters[1], clusters[1]);
}

TEST_F(SkinControllerTest, JointIndicesOutsideTheNamesAreDropped) {
  // -1 names the bind shape; 2 and 99 name no joint. Pairs keep the order of the v list.
  ASSERT_TRUE(ReadWeights("<skin>" + NameSource("joints", "a b") + FloatSource("weights", "0.5 0.25 1", 1) +
                          VertexWeights("3 2 1", "-1 0 1 1 2 0  0 2 99 1  1 0") + "</skin>"));
  ASSERT_EQ(clusters.GetCount(), 2);
  EXPECT_EQ(Indices(clusters[0]), (std::vector<int>{1}));
  EXPECT_EQ(Weights(clusters[0]), (std::vector<double>{1}));
  EXPECT_EQ(Indices(clusters[1]), (std::vector<int>{0, 2}));
  EXPECT_EQ(Weights(clusters[1]), (std::vector<double>{0.25, 0.5}));
}

TEST_F(SkinControllerTest, AJointWithoutWeightedVerticesStillGetsACluster) {
  ASSERT_TRUE(ReadWeights("<skin>" + NameSource("joints", "a b c") + FloatSource("weights", "1", 1) +
                          VertexWeights("1 1", "2 0 2 0") + "</skin>"));
  ASSERT_EQ(clusters.GetCount(), 3);
  EXPECT_EQ(clusters[0]->GetControlPointIndicesCount(), 0);
  EXPECT_EQ(clusters[1]->GetControlPointIndicesCount(), 0);
  EXPECT_EQ(Indices(clusters[2]), (std::vector<int>{0, 1}));
}

TEST_F(SkinControllerTest, TheStrideIsTheInputCountWhateverTheOffsets) {
  // Three inputs: groups of three values, although the offsets only reach 1.
  const std::string skin = "<skin>" + NameSource("joints", "a b") + FloatSource("weights", "0.5 0.75", 1) +
                           "<vertex_weights>" + Input("JOINT", "#joints", 0) + Input("WEIGHT", "#weights", 1) +
                           Input("WEIGHT", "#weights", 1) +
                           "<vcount>1 1</vcount><v>1 0 7 0 1 7</v></vertex_weights></skin>";
  ASSERT_TRUE(ReadWeights(skin));
  ASSERT_EQ(clusters.GetCount(), 2);
  EXPECT_EQ(Indices(clusters[0]), (std::vector<int>{1}));
  EXPECT_EQ(Weights(clusters[0]), (std::vector<double>{0.75}));
  EXPECT_EQ(Indices(clusters[1]), (std::vector<int>{0}));
}

TEST_F(SkinControllerTest, AWeightOffsetNotBelowTheInputCountFails) {
  const std::string skin = "<skin>" + NameSource("joints", "a") + FloatSource("weights", "1", 1) + "<vertex_weights>" +
                           Input("JOINT", "#joints", 0) + Input("WEIGHT", "#weights", 2) +
                           "<vcount>1</vcount><v>0 0 0</v></vertex_weights></skin>";
  EXPECT_FALSE(ReadWeights(skin));
  EXPECT_EQ(CountMessage("ERROR: Controller: could not find JOINT or WEIGHT"), 1);
  EXPECT_EQ(clusters.GetCount(), 0);
  EXPECT_FALSE(reader->GetStatus());
}

TEST_F(SkinControllerTest, AMissingWeightInputFailsAsAnOffsetOutOfRange) {
  const std::string skin = "<skin>" + NameSource("joints", "a") + "<vertex_weights>" + Input("JOINT", "#joints", 0) +
                           "<vcount>1</vcount><v>0</v></vertex_weights></skin>";
  EXPECT_FALSE(ReadWeights(skin));
  EXPECT_EQ(CountMessage("ERROR: Controller: could not find JOINT or WEIGHT"), 1);
}

TEST_F(SkinControllerTest, MissingVertexWeightsFail) {
  EXPECT_FALSE(ReadWeights("<skin>" + NameSource("joints", "a") + "</skin>"));
  EXPECT_EQ(CountMessage("ERROR: <vertex_weights> node not found in controller\n"), 1);
}

TEST_F(SkinControllerTest, AnUnknownSemanticFails) {
  const std::string skin = "<skin>" + NameSource("joints", "a") + FloatSource("weights", "1", 1) + "<vertex_weights>" +
                           Input("JOINT", "#joints", 0) + Input("WEIGHT", "#weights", 1) +
                           Input("COLOR", "#weights", 2) + "<vcount>1</vcount><v>0 0 0</v></vertex_weights></skin>";
  EXPECT_FALSE(ReadWeights(skin));
  EXPECT_EQ(CountMessage("ERROR: COLOR not supported in <input>"), 1);
}

TEST_F(SkinControllerTest, ASourceThatCannotBeReadFails) {
  const std::string skin = "<skin>" + NameSource("joints", "a") + "<vertex_weights>" + Input("JOINT", "#joints", 0) +
                           Input("WEIGHT", "#nowhere", 1) + "<vcount>1</vcount><v>0 0</v></vertex_weights></skin>";
  EXPECT_FALSE(ReadWeights(skin));
  EXPECT_EQ(CountMessage("ERROR: reading array in <source>: #nowhere"), 1);
}

TEST_F(SkinControllerTest, EmptyWeightsOrJointsFail) {
  EXPECT_FALSE(ReadWeights("<skin>" + NameSource("joints", "a") + FloatSource("weights", "", 1) +
                           VertexWeights("1", "0 0") + "</skin>"));
  EXPECT_FALSE(ReadWeights("<skin>" + NameSource("joints", "") + FloatSource("weights", "1", 1) +
                           VertexWeights("1", "0 0") + "</skin>"));
  EXPECT_EQ(CountMessage("ERROR: Unable to find weight or jointIds for controller"), 2);
}

TEST_F(SkinControllerTest, CountsBeyondTheVListEndWithIt) {
  // The second vertex claims two billion joints: the walk ends with the list, and the last,
  // incomplete pair still adds its vertex with the default weight.
  ASSERT_TRUE(ReadWeights("<skin>" + NameSource("joints", "a b") + FloatSource("weights", "0.5 0.25", 1) +
                          VertexWeights("1 2000000000", "1 1  1 0 0") + "</skin>"));
  ASSERT_EQ(clusters.GetCount(), 2);
  EXPECT_EQ(Indices(clusters[0]), (std::vector<int>{1}));
  EXPECT_EQ(Weights(clusters[0]), (std::vector<double>{0.0}));
  EXPECT_EQ(Indices(clusters[1]), (std::vector<int>{0, 1}));
  EXPECT_EQ(Weights(clusters[1]), (std::vector<double>{0.25, 0.5}));
}

TEST_F(SkinControllerTest, NegativeCountsAndOffsetsNameNothing) {
  // A count below 0 counts as none; an offset below 0 reads no value, so its joint is none.
  ASSERT_TRUE(ReadWeights("<skin>" + NameSource("joints", "a") + FloatSource("weights", "0.5", 1) +
                          VertexWeights("-4 1", "0 0") + "</skin>"));
  ASSERT_EQ(clusters.GetCount(), 1);
  EXPECT_EQ(Indices(clusters[0]), (std::vector<int>{1}));

  const std::string negative = "<skin>" + NameSource("joints", "a") + FloatSource("weights", "0.5", 1) +
                               "<vertex_weights>" + Input("JOINT", "#joints", -1) + Input("WEIGHT", "#weights", 1) +
                               "<vcount>1 1</vcount><v>0 0 0 0</v></vertex_weights></skin>";
  ASSERT_TRUE(ReadWeights(negative));
  ASSERT_EQ(clusters.GetCount(), 1);
  EXPECT_EQ(clusters[0]->GetControlPointIndicesCount(), 0);
}

class LinkMatricesTest : public SkinControllerTest {
 protected:
  // Link matrices of `skin` read into `count` fresh clusters.
  bool ReadLinks(const std::string& skin, int count) {
    clusters.Clear();
    for (int i = 0; i < count; ++i) clusters.Add(reader->CreateCluster());
    return reader->ImportLinkMatricesInController(Parse(skin), clusters);
  }
};

TEST_F(LinkMatricesTest, EachClusterGetsTheInverseBindMatrixInvertedAndAPlaceholderLink) {
  ASSERT_TRUE(ReadLinks(
      "<skin>" + NameSource("joints", "hip rig:knee") + MatrixSource("ibm", kTwoMatrices) + JointsElement() + "</skin>",
      2));
  const char* const names[] = {"hip", "rig:knee"};
  for (int i = 0; i < 2; ++i) {
    KZylCluster* cluster = clusters[i];
    EXPECT_EQ(cluster->GetTransformLinkMatrix().GetT(), KZylVector4(0, i + 1.0, 0, 1));
    KZylNode* link = cluster->GetLink();
    ASSERT_NE(link, nullptr);
    EXPECT_EQ(link->GetName(), names[i]);
    // Placeholders stand alone, at their bind matrix.
    EXPECT_EQ(link->GetParent(), nullptr);
    EXPECT_EQ(link->GetNodeAttribute(), nullptr);
    EXPECT_EQ(link->GetDefaultT(), KZylVector4(0, i + 1.0, 0, 1));
  }
  EXPECT_TRUE(reader->GetStatus());
}

TEST_F(LinkMatricesTest, ThreeJointsAndTwoMatricesFail) {
  EXPECT_FALSE(ReadLinks(
      "<skin>" + NameSource("joints", "a b c") + MatrixSource("ibm", kTwoMatrices) + JointsElement() + "</skin>", 3));
  EXPECT_EQ(CountMessage("ERROR: in controller, number of joints 3 is different than number of bind pose matrices 2"),
            1);
  EXPECT_EQ(clusters[0]->GetLink(), nullptr);
}

TEST_F(LinkMatricesTest, LinksNotMatchingTheVertexWeightJointsFail) {
  EXPECT_FALSE(ReadLinks(
      "<skin>" + NameSource("joints", "a b") + MatrixSource("ibm", kTwoMatrices) + JointsElement() + "</skin>", 3));
  EXPECT_EQ(CountMessage("ERROR: in controller, number of links 3 is different than number of bind pose matrices 2"),
            1);
}

TEST_F(LinkMatricesTest, MissingJointsNamesOrMatricesFail) {
  EXPECT_FALSE(ReadLinks("<skin/>", 1));
  EXPECT_EQ(CountMessage("ERROR: <joints> node not found in controller\n"), 1);

  EXPECT_FALSE(ReadLinks(
      "<skin>" + MatrixSource("ibm", kTwoMatrices) + "<joints>" + Input("INV_BIND_MATRIX", "#ibm") + "</joints></skin>",
      2));
  EXPECT_FALSE(
      ReadLinks("<skin>" + NameSource("joints", "a") + MatrixSource("ibm", "") + JointsElement() + "</skin>", 1));
  EXPECT_EQ(CountMessage("ERROR: Unable to find weight or bind matrices for controller"), 2);

  EXPECT_FALSE(ReadLinks("<skin>" + NameSource("joints", "a") + JointsElement() + "</skin>", 1));
  EXPECT_EQ(CountMessage("ERROR: reading array in <source>: #ibm"), 1);

  EXPECT_FALSE(ReadLinks("<skin>" + NameSource("joints", "a") + MatrixSource("ibm", kTwoMatrices) + "<joints>" +
                             Input("JOINT", "#joints") + Input("MORPH_WEIGHT", "#ibm") + "</joints></skin>",
                         1));
  EXPECT_EQ(CountMessage("ERROR: MORPH_WEIGHT not supported in <input>"), 1);
}

// A whole controller: two joints over three vertices.
std::string TwoJointController(const std::string& id, const std::string& beforeSkin = "",
                               const std::string& bindShape = "<bind_shape_matrix>" + Translation(5, 6, 7) +
                                                              "</bind_shape_matrix>") {
  return Controller(id, beforeSkin + "<skin source=\"#geo\">" + bindShape + NameSource("joints", "hip knee") +
                            MatrixSource("ibm", kTwoMatrices) + FloatSource("weights", "1 0.5", 1) + JointsElement() +
                            VertexWeights("1 2 1", "0 0  0 1 1 1  1 0") + "</skin>");
}

TEST_F(SkinControllerTest, AControllerIsRegisteredWithItsClustersAndBindPose) {
  ASSERT_TRUE(reader->ImportController(Parse(TwoJointController("skin1"))));
  const ControllerRecord* record = Record("skin1");
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->id, "skin1");
  EXPECT_EQ(record->source, "#geo");
  EXPECT_EQ(record->bindShapeMatrix.GetT(), KZylVector4(5, 6, 7, 1));
  EXPECT_TRUE(record->morphTargets.IsEmpty());
  ASSERT_EQ(record->clusters.GetCount(), 2);
  EXPECT_EQ(Indices(record->clusters[0]), (std::vector<int>{0, 1}));
  EXPECT_EQ(Weights(record->clusters[0]), (std::vector<double>{1, 0.5}));
  EXPECT_EQ(Indices(record->clusters[1]), (std::vector<int>{1, 2}));
  EXPECT_EQ(Weights(record->clusters[1]), (std::vector<double>{0.5, 1}));
  for (KZylCluster* cluster : record->clusters) EXPECT_EQ(cluster->GetTransformMatrix(), record->bindShapeMatrix);

  KZylPose* pose = record->bindPose;
  ASSERT_NE(pose, nullptr);
  EXPECT_EQ(pose->GetName(), "skin1");
  EXPECT_TRUE(pose->IsBindPose());
  ASSERT_EQ(pose->GetCount(), 2);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(pose->GetNode(i), record->clusters[i]->GetLink());
    EXPECT_FALSE(pose->IsLocalMatrix(i));
    EXPECT_EQ(KZylXMatrix(pose->GetMatrix(i)).GetT(), KZylVector4(0, i + 1.0, 0, 1));
  }
  // The pose is the controller's own: the bind poses of the reader come from instances.
  EXPECT_EQ(reader->GetState().bindPoses.GetCount(), 0);
  EXPECT_TRUE(reader->GetStatus());
  EXPECT_TRUE(Messages().empty());
}

TEST_F(SkinControllerTest, WithoutBindShapeMatrixTheClustersKeepTheIdentity) {
  ASSERT_TRUE(reader->ImportController(Parse(TwoJointController("skin1", "", ""))));
  const ControllerRecord* record = Record("skin1");
  ASSERT_NE(record, nullptr);
  EXPECT_TRUE(record->bindShapeMatrix.IsIdentity());
  EXPECT_TRUE(record->clusters[0]->GetTransformMatrix().IsIdentity());
}

TEST_F(SkinControllerTest, UnknownChildrenWarnAndTheSkinIsStillRead) {
  ASSERT_TRUE(reader->ImportController(Parse(TwoJointController("skin1", "<asset/>"))));
  EXPECT_EQ(CountMessage("Warning: unknown structure in controller: <asset>"), 1);
  EXPECT_NE(Record("skin1"), nullptr);
}

TEST_F(SkinControllerTest, OnlyAnExtraWarnsAndThenLacksASource) {
  EXPECT_FALSE(reader->ImportController(Parse(Controller("c", "<extra/>"))));
  EXPECT_EQ(Messages(), (std::vector<std::string>{"Warning: unknown structure in controller: <extra>",
                                                  "ERROR: Controller is missing a source"}));
  EXPECT_EQ(Record("c"), nullptr);
  EXPECT_FALSE(reader->GetStatus());
}

TEST_F(SkinControllerTest, ASecondSkinFailsAndNothingIsRegistered) {
  const std::string xml = TwoJointController("twice");
  const std::string skin = xml.substr(xml.find("<skin"), xml.find("</controller>") - xml.find("<skin"));
  EXPECT_FALSE(reader->ImportController(Parse(Controller("twice", skin + skin))));
  EXPECT_EQ(CountMessage("ERROR: more than one skin defined for library twice"), 1);
  EXPECT_EQ(Record("twice"), nullptr);
}

TEST_F(SkinControllerTest, ASkinWithoutSourceIsRefused) {
  std::string xml = TwoJointController("nosource");
  xml.replace(xml.find(" source=\"#geo\""), std::string(" source=\"#geo\"").size(), "");
  EXPECT_FALSE(reader->ImportController(Parse(xml)));
  EXPECT_EQ(CountMessage("ERROR: Controller is missing a source"), 1);
  EXPECT_EQ(Record("nosource"), nullptr);
}

TEST_F(SkinControllerTest, AFailedSkinStopsTheController) {
  EXPECT_FALSE(reader->ImportController(Parse(Controller("broken", "<skin source=\"#geo\"/>"))));
  EXPECT_EQ(Messages(), (std::vector<std::string>{"ERROR: <vertex_weights> node not found in controller\n"}));
  EXPECT_EQ(Record("broken"), nullptr);
  EXPECT_FALSE(reader->GetStatus());
}

}  // namespace
}  // namespace zyltest
