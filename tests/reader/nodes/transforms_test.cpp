// Transform elements of a node: rotations and the rotation order, translations and pivots,
// scaling, matrices, the unsupported elements, and the animation targets they register.

#include <cmath>

#include "tests/reader/nodes/scene_documents.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;

constexpr double kTolerance = 1e-9;

class TransformsTest : public zyltest::ReaderTest {
 protected:
  // Runs the transform import of `xml` (a node element) on a fresh node named "n".
  bool Import(const std::string& xml) {
    node = KZylNode::Create(&manager, "n");
    return reader->ImportTransforms(Parse(xml), node);
  }
  // The channel records registered under `key`, in order, as "kind:axis".
  std::vector<std::string> Targets(const std::string& key) const {
    std::vector<std::string> found;
    const auto& targets = reader->GetState().animationTargets;
    for (int i = 0; i < targets.GetCount(); ++i)
      if (targets.GetId(i) == key.c_str())
        found.push_back(std::string(targets.Get(i)->kind.Buffer()) + ":" + std::to_string(targets.Get(i)->axis));
    return found;
  }

  KZylNode* node = nullptr;
};

void ExpectVector(const KZylVector4& actual, double x, double y, double z) {
  EXPECT_NEAR(actual[0], x, kTolerance);
  EXPECT_NEAR(actual[1], y, kTolerance);
  EXPECT_NEAR(actual[2], z, kTolerance);
}

TEST_F(TransformsTest, RotatesListedZYXGiveOrderXYZAndSumTheAngles) {
  ASSERT_TRUE(Import("<node><rotate sid=\"rotateZ\">0 0 1 30</rotate><rotate sid=\"rotateY\">0 1 0 20</rotate>"
                     "<rotate sid=\"rotateX\">1 0 0 10</rotate></node>"));
  EXPECT_EQ(node->GetRotationOrder(eSourcePivot), eEulerXYZ);
  ExpectVector(node->GetDefaultR(), 10, 20, 30);
  EXPECT_TRUE(node->GetRotationActive());
  EXPECT_EQ(Targets("n/rotateZ"), std::vector<std::string>{"rotate:2"});
  EXPECT_EQ(Targets("n/rotateX"), std::vector<std::string>{"rotate:0"});
}

TEST_F(TransformsTest, RotatesListedXYZGiveOrderZYX) {
  ASSERT_TRUE(Import("<node><rotate>1 0 0 10</rotate><rotate>0 1 0 20</rotate><rotate>0 0 1 30</rotate></node>"));
  EXPECT_EQ(node->GetRotationOrder(eSourcePivot), eEulerZYX);
  ExpectVector(node->GetDefaultR(), 10, 20, 30);
}

TEST_F(TransformsTest, TwoRotatesWithXListedSecondGiveOrderXYZ) {
  ASSERT_TRUE(Import("<node><rotate>0 1 0 20</rotate><rotate>1 0 0 10</rotate></node>"));
  EXPECT_EQ(node->GetRotationOrder(eSourcePivot), eEulerXYZ);
}

TEST_F(TransformsTest, TwoRotatesYThenZPutTheMissingXLast) {
  // Positions (-1, 0, 1): X comes after Y and Z, giving first Y, then Z, then X.
  ASSERT_TRUE(Import("<node><rotate>0 1 0 20</rotate><rotate>0 0 1 30</rotate></node>"));
  EXPECT_EQ(node->GetRotationOrder(eSourcePivot), eEulerXZY);
}

TEST_F(TransformsTest, OneRotateOrNoneKeepsOrderXYZ) {
  ASSERT_TRUE(Import("<node><rotate>0 0 1 30</rotate></node>"));
  EXPECT_EQ(node->GetRotationOrder(eSourcePivot), eEulerXYZ);
  ASSERT_TRUE(Import("<node/>"));
  EXPECT_EQ(node->GetRotationOrder(eSourcePivot), eEulerXYZ);
  EXPECT_FALSE(node->GetRotationActive());
}

TEST_F(TransformsTest, ASecondRotateAboutOneAxisMovesItsPositionAndAdds) {
  // X at 0, Y at 1, X again at 2: Y comes first, then X, then the missing Z.
  ASSERT_TRUE(Import("<node><rotate>1 0 0 10</rotate><rotate>0 1 0 20</rotate><rotate>1 0 0 5</rotate></node>"));
  EXPECT_EQ(node->GetRotationOrder(eSourcePivot), eEulerZXY);
  ExpectVector(node->GetDefaultR(), 15, 20, 0);
}

TEST(RotationOrder, EveryPermutationOfThreeAxes) {
  struct Case {
    int positions[3];
    ERotationOrder order;
  };
  // Positions are where X, Y and Z were listed.
  const Case cases[] = {
      {{2, 1, 0}, eEulerXYZ}, {{2, 0, 1}, eEulerXZY}, {{0, 2, 1}, eEulerYZX},
      {{1, 2, 0}, eEulerYXZ}, {{1, 0, 2}, eEulerZXY}, {{0, 1, 2}, eEulerZYX},
  };
  for (const Case& c : cases) {
    int positions[3] = {c.positions[0], c.positions[1], c.positions[2]};
    EXPECT_EQ(KZylReaderCollada::ExtrapolateRotationOrder(positions, 3), c.order)
        << c.positions[0] << c.positions[1] << c.positions[2];
  }
}

TEST(RotationOrder, TwoAxesSpecialCasesAndTies) {
  int xSecond[3] = {1, 0, -1};
  EXPECT_EQ(KZylReaderCollada::ExtrapolateRotationOrder(xSecond, 2), eEulerXYZ);
  int ySecondNoX[3] = {-1, 1, 0};
  EXPECT_EQ(KZylReaderCollada::ExtrapolateRotationOrder(ySecondNoX, 2), eEulerXYZ);
  // X first, Z second: the missing Y goes last, giving X, Z, Y.
  int xFirstZSecond[3] = {0, -1, 1};
  EXPECT_EQ(KZylReaderCollada::ExtrapolateRotationOrder(xFirstZSecond, 2), eEulerYZX);
  // The positions are overwritten.
  EXPECT_NE(xFirstZSecond[1], -1);
  int count1[3] = {0, -1, -1};
  EXPECT_EQ(KZylReaderCollada::ExtrapolateRotationOrder(count1, 1), eEulerXYZ);
}

TEST_F(TransformsTest, RotationAboutANonPrincipalAxisGoesThroughTheQuaternion) {
  ASSERT_TRUE(Import("<node><rotate sid=\"r\">0 0 2 90</rotate></node>"));
  // The axis is not normalised: q = (0, 0, 2 sin 45, cos 45), |q|^2 = 2.5.
  const double s = 2.0 / 2.5;
  const double qz = 2.0 * std::sin(M_PI / 4), qw = std::cos(M_PI / 4);
  const double m00 = 1.0 - qz * qz * s, m01 = qw * qz * s;
  ExpectVector(node->GetDefaultR(), 0.0, 0.0, std::atan2(m01, m00) * 180.0 / M_PI);
  EXPECT_NEAR(node->GetDefaultR()[2], 126.86989764584402, kTolerance);
  // It does not count for the rotation order; its channel has axis -1.
  EXPECT_EQ(node->GetRotationOrder(eSourcePivot), eEulerXYZ);
  EXPECT_EQ(Targets("n/r"), std::vector<std::string>{"rotate:-1"});
}

TEST_F(TransformsTest, NonPrincipalAxisNotCountedInTheOrder) {
  // Y, an oblique axis, then X: two counted rotates with X second give XYZ; had the oblique one
  // counted, X would stand third and the order would be ZXY.
  ASSERT_TRUE(Import("<node><rotate>0 1 0 0</rotate><rotate>0 1 1 0</rotate><rotate>1 0 0 0</rotate></node>"));
  EXPECT_EQ(node->GetRotationOrder(eSourcePivot), eEulerXYZ);
}

TEST_F(TransformsTest, NearlyPrincipalAxesHitTheGimbalBranches) {
  ASSERT_TRUE(Import("<node><rotate>0 1 1e-12 -90</rotate></node>"));
  ExpectVector(node->GetDefaultR(), 0.0, -90.0, 0.0);
  ASSERT_TRUE(Import("<node><rotate>0 1 1e-12 90</rotate></node>"));
  ExpectVector(node->GetDefaultR(), 0.0, 90.0, 0.0);
}

TEST_F(TransformsTest, HugeAxisStaysFinite) {
  ASSERT_TRUE(Import("<node><rotate>0 0 1e200 90</rotate></node>"));
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(std::isfinite(node->GetDefaultR()[i]));
  // The axis is not normalised: the longer it is, the closer the rotation comes to 180 degrees.
  ExpectVector(node->GetDefaultR(), 0.0, 0.0, 180.0);
}

TEST_F(TransformsTest, ZeroAxisGivesNoRotation) {
  ASSERT_TRUE(Import("<node><rotate>0 0 0 45</rotate></node>"));
  ExpectVector(node->GetDefaultR(), 0.0, 0.0, 0.0);
}

TEST_F(TransformsTest, JointOrientWritesThePreRotationOnTheElementsOwnAxis) {
  ASSERT_TRUE(Import("<node><rotate sid=\"jointOrientX\">0 0 1 45</rotate>"
                     "<rotate sid=\"jointOrientY\">0 1 0 30</rotate></node>"));
  // The suffix X is not used: the axis (0, 0, 1) writes Z.
  ExpectVector(node->GetPreRotation(eSourcePivot), 0, 30, 45);
  ExpectVector(node->GetDefaultR(), 0, 0, 0);
  EXPECT_TRUE(node->GetRotationActive());
  EXPECT_TRUE(Targets("n/jointOrientX").empty());
  EXPECT_EQ(node->GetRotationOrder(eSourcePivot), eEulerXYZ);
}

TEST_F(TransformsTest, PostRotationWritesThePostRotation) {
  ASSERT_TRUE(Import("<node><rotate sid=\"post-rotationZ\">0 0 1 -90</rotate></node>"));
  ExpectVector(node->GetPostRotation(eSourcePivot), 0, 0, -90);
  ExpectVector(node->GetDefaultR(), 0, 0, 0);
  EXPECT_TRUE(Targets("n/post-rotationZ").empty());
}

TEST_F(TransformsTest, ScaleReplacesAndRegistersThreeChannels) {
  ASSERT_TRUE(Import("<node><scale sid=\"scale\">2 2 2</scale><scale sid=\"scale\">1 2 3</scale></node>"));
  ExpectVector(node->GetDefaultS(), 1, 2, 3);
  EXPECT_EQ(Targets("n/scale"),
            (std::vector<std::string>{"scale:0", "scale:1", "scale:2", "scale:0", "scale:1", "scale:2"}));
}

TEST_F(TransformsTest, TranslatesByPivotSid) {
  ASSERT_TRUE(Import("<node><translate sid=\"rotatePivot\">1 2 3</translate>"
                     "<translate sid=\"scalePivot\">4 5 6</translate>"
                     "<translate sid=\"rotatePivotTranslation\">7 8 9</translate>"
                     "<translate sid=\"scalePivotTranslation\">10 11 12</translate>"
                     "<translate sid=\"rotatePivotInverse\">-1 -2 -3</translate>"
                     "<translate sid=\"scalePivotInverse\">-4 -5 -6</translate></node>"));
  ExpectVector(node->GetRotationPivot(eSourcePivot), 1, 2, 3);
  ExpectVector(node->GetScalingPivot(eSourcePivot), 4, 5, 6);
  ExpectVector(node->GetRotationOffset(eSourcePivot), 7, 8, 9);
  ExpectVector(node->GetScalingOffset(eSourcePivot), 10, 11, 12);
  // The inverse pivots change nothing, and pivots are not translations.
  ExpectVector(node->GetDefaultT(), 0, 0, 0);
  EXPECT_EQ(reader->GetState().animationTargets.GetCount(), 0);
}

TEST_F(TransformsTest, TheLastPlainTranslateWins) {
  ASSERT_TRUE(Import("<node><translate sid=\"t\">1 2 3</translate><translate>4 5 6</translate></node>"));
  ExpectVector(node->GetDefaultT(), 4, 5, 6);
  EXPECT_EQ(node->GetDefaultT()[3], 1.0);
  EXPECT_EQ(Targets("n/t"), (std::vector<std::string>{"translate:0", "translate:1", "translate:2"}));
  // Without sid the key is the node's name and a slash.
  EXPECT_EQ(Targets("n/").size(), 3u);
}

TEST_F(TransformsTest, MissingNumbersReadAsZero) {
  ASSERT_TRUE(Import("<node><translate>1</translate><scale></scale></node>"));
  ExpectVector(node->GetDefaultT(), 1, 0, 0);
  ExpectVector(node->GetDefaultS(), 0, 0, 0);
}

TEST_F(TransformsTest, MatrixDecomposesIntoTranslationRotationAndScaling) {
  // COLLADA writes by rows with the translation in the fourth column: T(1,2,3) Rz(90) S(2).
  ASSERT_TRUE(Import("<node><matrix sid=\"m\">0 -2 0 1  2 0 0 2  0 0 2 3  0 0 0 1</matrix></node>"));
  ExpectVector(node->GetDefaultT(), 1, 2, 3);
  ExpectVector(node->GetDefaultR(), 0, 0, 90);
  ExpectVector(node->GetDefaultS(), 2, 2, 2);
  EXPECT_TRUE(Targets("n/m").empty());
  // The node's matrix is the document's, transposed into the kit's row-vector form.
  KZylXMatrix global = node->GetGlobalFromDefaultTake();
  EXPECT_NEAR(global.Get(0, 1), 2.0, kTolerance);
  EXPECT_NEAR(global.Get(1, 0), -2.0, kTolerance);
  EXPECT_NEAR(global.Get(3, 2), 3.0, kTolerance);
}

TEST_F(TransformsTest, MatrixThenTranslateKeepsBothInDocumentOrder) {
  ASSERT_TRUE(Import("<node><matrix>0 -2 0 1  2 0 0 2  0 0 2 3  0 0 0 1</matrix><translate>7 8 9</translate></node>"));
  ExpectVector(node->GetDefaultT(), 7, 8, 9);
  ExpectVector(node->GetDefaultS(), 2, 2, 2);
  ASSERT_TRUE(Import("<node><translate>7 8 9</translate><matrix>0 -2 0 1  2 0 0 2  0 0 2 3  0 0 0 1</matrix></node>"));
  ExpectVector(node->GetDefaultT(), 1, 2, 3);
}

TEST_F(TransformsTest, ShortMatrixTakesTheRestFromTheIdentity) {
  ASSERT_TRUE(Import("<node><matrix></matrix></node>"));
  ExpectVector(node->GetDefaultT(), 0, 0, 0);
  ExpectVector(node->GetDefaultS(), 1, 1, 1);
}

TEST_F(TransformsTest, PerspectiveWarnsEveryTime) {
  ASSERT_TRUE(Import("<node><perspective/><perspective/></node>"));
  EXPECT_EQ(CountMessage("Warning: <perspective> is not supported."), 2);
}

TEST_F(TransformsTest, SkewWarnsOncePerReader) {
  ASSERT_TRUE(Import("<node><skew>45 1 0 0 0 1 0</skew><skew/></node>"));
  ASSERT_TRUE(Import("<node><skew/></node>"));
  EXPECT_EQ(CountMessage("Warning: transform is not supported by ZYL: skew"), 1);
}

TEST_F(TransformsTest, ExtraWarnsEveryTimeAndSilencesBoundingBoxes) {
  ASSERT_TRUE(Import("<node><extra/><extra/></node>"));
  EXPECT_EQ(CountMessage("Warning: Extra node is not supported in node"), 2);
  EXPECT_TRUE(reader->IsReported("boundingbox"));
  EXPECT_FALSE(reader->IsReported("extra"));
}

TEST_F(TransformsTest, ElementsOfOtherStepsAreSkipped) {
  ASSERT_TRUE(Import("<node><instance/><instance_geometry/><instance_camera/><instance_light/>"
                     "<instance_controller/><boundingbox/><node/><lookat/></node>"));
  EXPECT_TRUE(Messages().empty());
}

TEST_F(TransformsTest, UnknownElementFailsWithItsName) {
  EXPECT_FALSE(Import("<node><translate>1 2 3</translate><asset/><translate>4 5 6</translate></node>"));
  EXPECT_EQ(CountMessage("ERROR: structure asset unknown\n"), 1);
  // The import stopped at the unknown element.
  ExpectVector(node->GetDefaultT(), 1, 2, 3);
  EXPECT_FALSE(Import("<node><instance_node url=\"#x\"/></node>"));
  EXPECT_EQ(CountMessage("ERROR: structure instance_node unknown\n"), 1);
}

TEST_F(TransformsTest, SetMatrixSetsTheDefaultTransform) {
  KZylNode* target = KZylNode::Create(&manager, "t");
  KZylXMatrix matrix(KZylVector4(1, 2, 3), KZylVector4(0, 0, 90), KZylVector4(2, 2, 2));
  reader->SetMatrix(target, &matrix);
  ExpectVector(target->GetDefaultT(), 1, 2, 3);
  ExpectVector(target->GetDefaultR(), 0, 0, 90);
  ExpectVector(target->GetDefaultS(), 2, 2, 2);
}

TEST(TransformsDocument, TheDumpShowsTransformsAndOrder) {
  zyldae::Json dump = zyltest::DumpText(zyltest::SceneDocument(
      "", "<node id=\"a\"><translate>1 2 3</translate><rotate>1 0 0 10</rotate><rotate>0 1 0 20</rotate>"
          "<rotate>0 0 1 30</rotate><scale>1 2 3</scale></node>"));
  ASSERT_EQ(dump["ok"], true);
  const zyldae::Json* a = zyltest::FindDumpNode(dump["scene"]["root"], "a");
  ASSERT_NE(a, nullptr);
  EXPECT_EQ((*a)["translation"], zyldae::Json::parse("[1, 2, 3, 1]"));
  EXPECT_EQ((*a)["rotation"], zyldae::Json::parse("[10, 20, 30, 0]"));
  EXPECT_EQ((*a)["scaling"], zyldae::Json::parse("[1, 2, 3, 1]"));
  EXPECT_EQ((*a)["rotationOrder"], 5);
  EXPECT_EQ((*a)["rotationActive"], true);
}


// Reads `body` as a whole document with a reader of its own and counts the animation targets
// that the read recorded.
int TargetsRecordedByRead(const std::string& body) {
  KZylSdkManager manager;
  KZylReaderCollada reader(manager);
  zyltest::TempFile file(zyltest::Collada(body));
  if (!reader.FileOpen(file.Path().c_str())) return -1;
  if (!reader.Read(*KZylScene::Create(&manager, ""), KZylStreamOptionsColladaReader::Create(&manager, ""))) return -1;
  return reader.GetState().animationTargets.GetCount();
}

const char* const kTranslatedNode =
    "<library_visual_scenes><visual_scene id=\"vs\"><node id=\"n\"><translate sid=\"t\">1 2 3</translate></node>"
    "</visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene>";

TEST(TransformTargets, ADocumentWithoutAnimationsRecordsNone) {
  EXPECT_EQ(TargetsRecordedByRead(kTranslatedNode), 0);
}

TEST(TransformTargets, AnAnimationLibraryInEitherFormMakesTheReadRecordThem) {
  EXPECT_EQ(TargetsRecordedByRead(std::string("<library_animations/>") + kTranslatedNode), 3);
  EXPECT_EQ(TargetsRecordedByRead(std::string("<library type=\"ANIMATION\"/>") + kTranslatedNode), 3);
}

}  // namespace
