// The complete reading bakes channels on `matrix` elements, whole or one entry, into the node's
// translation, rotation and scaling curves: at every key, the matrix that the curves give is
// the document's.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reader/output_budget.h"
#include "tests/reader/animation/animation_documents.h"
#include "tests/support/collada_matrices.h"

namespace zyltest {
namespace {

using namespace zylsdk;

// Curves hold single-precision values.
constexpr double kCurvePrecision = 1e-5;

const KZylTakeNode::EChannel kTransformChannels[9] = {
    KZylTakeNode::eTranslationX, KZylTakeNode::eTranslationY, KZylTakeNode::eTranslationZ,
    KZylTakeNode::eRotationX,    KZylTakeNode::eRotationY,    KZylTakeNode::eRotationZ,
    KZylTakeNode::eScaleX,       KZylTakeNode::eScaleY,       KZylTakeNode::eScaleZ};

// The document's matrix at key k: turning about Z by 100 degrees a key, so that the Euler
// angles must go on past 180.
ColladaMatrix KeyMatrix(int k) {
  return TranslateMatrix(k, 2.0 * k, -1) * RotateMatrix(0, 0, 1, 100.0 * k) * RotateMatrix(1, 0, 0, 30) *
         ScaleMatrix(1 + 0.5 * k, 1, 2);
}

std::string KeyValues(int count) {
  std::string values;
  for (int k = 0; k < count; ++k) values += MatrixText(KeyMatrix(k)) + " ";
  return values;
}

std::string BoxWith(const std::string& transforms) { return "<node id=\"box\" name=\"box\">" + transforms + "</node>"; }

const Keys kFourMatrices{"0 1 2 3", KeyValues(4), "LINEAR LINEAR LINEAR LINEAR", "", "", {"TRANSFORM"}, "float4x4"};

class MatrixChannelsTest : public ::testing::Test {
 protected:
  void Read(const std::string& node, const std::string& animations) {
    read = ReadText(AnimatedDocument("", node, animations), Complete());
    ASSERT_TRUE(read.ok);
  }
  const KFCurve* Curve(KZylTakeNode::EChannel channel) const { return FindCurve(read.scene, "box", channel); }

  // The local matrix that the box's curves give at their key `key`, through a node of the same
  // rotation order.
  KZylXMatrix CurveMatrix(int key) const {
    const KZylNode* box = read.scene->FindNodeByName("box");
    KZylNode* probe = KZylNode::Create(read.manager.get(), "probe");
    probe->SetRotationOrder(eSourcePivot, box->GetRotationOrder(eSourcePivot));
    double values[9];
    for (int i = 0; i < 9; ++i) values[i] = Curve(kTransformChannels[i])->KeyGetValue(key);
    probe->SetDefaultT(KZylVector4(values[0], values[1], values[2], 1));
    probe->SetDefaultR(KZylVector4(values[3], values[4], values[5]));
    probe->SetDefaultS(KZylVector4(values[6], values[7], values[8], 1));
    return probe->GetLocalFromDefaultTake();
  }

  // Each curve holds one key per time of `times`, at that time.
  void ExpectKeyTimes(const std::vector<double>& times) const {
    for (KZylTakeNode::EChannel channel : kTransformChannels) {
      const KFCurve* curve = Curve(channel);
      ASSERT_NE(curve, nullptr) << channel;
      ASSERT_EQ(curve->KeyGetCount(), static_cast<int>(times.size())) << channel;
      for (size_t k = 0; k < times.size(); ++k)
        EXPECT_EQ(curve->KeyGetTime(static_cast<int>(k)).GetSecondDouble(), times[k]) << channel;
    }
  }

  zyldae::ReadResult read;
};

TEST_F(MatrixChannelsTest, AWholeMatrixChannelGivesTheDocumentsMatrixAtEveryKey) {
  Read(BoxWith("<matrix sid=\"transform\">" + MatrixText(KeyMatrix(0)) + "</matrix>"),
       Animation("a", "box/transform", kFourMatrices));
  ASSERT_NO_FATAL_FAILURE(ExpectKeyTimes({0, 1, 2, 3}));
  for (int k = 0; k < 4; ++k) EXPECT_TRUE(KitMatrixIs(CurveMatrix(k), KeyMatrix(k), kCurvePrecision)) << "key " << k;
  EXPECT_TRUE(Messages(read).empty());
}

TEST_F(MatrixChannelsTest, AChannelPastTheOutputBudgetIsSkipped) {
  const std::string node = BoxWith("<matrix sid=\"transform\">" + MatrixText(KeyMatrix(0)) + "</matrix>");
  const std::string document = AnimatedDocument("", node, Animation("a", "box/transform", kFourMatrices));
  // Four keys of a whole matrix: nine curves of keys, and the time and sixteen values of each.
  const int64_t bytes = 4 * (9 * zylsdk::OutputBudget::kBytesPerKey + 17 * static_cast<int64_t>(sizeof(double)));
  zyldae::ReadSettings settings = Complete();
  settings.integerOptions = {{"OUTPUT RATIO", 0}, {"OUTPUT FLOOR", static_cast<int>(bytes - 1)}};
  const zyldae::ReadResult tight = ReadText(document, settings);
  ASSERT_TRUE(tight.ok);
  EXPECT_EQ(CountMessage(tight, "Warning: animation channels skipped: the read would make more than " +
                                    std::to_string(bytes - 1) +
                                    " bytes of keys and skins, the limit for this document (read options OUTPUT "
                                    "RATIO and OUTPUT FLOOR)"),
            1);
  const KFCurve* skipped = FindCurve(tight.scene, "box", KZylTakeNode::eTranslationX);
  EXPECT_TRUE(!skipped || skipped->KeyGetCount() == 0);
  settings.integerOptions = {{"OUTPUT RATIO", 0}, {"OUTPUT FLOOR", static_cast<int>(bytes)}};
  const zyldae::ReadResult enough = ReadText(document, settings);
  const KFCurve* baked = FindCurve(enough.scene, "box", KZylTakeNode::eTranslationX);
  ASSERT_NE(baked, nullptr);
  EXPECT_EQ(baked->KeyGetCount(), 4);
}

TEST_F(MatrixChannelsTest, EulerAnglesStayContinuousFromKeyToKey) {
  Read(BoxWith("<matrix sid=\"transform\">" + MatrixText(KeyMatrix(0)) + "</matrix>"),
       Animation("a", "box/transform", kFourMatrices));
  const KFCurve* z = Curve(KZylTakeNode::eRotationZ);
  ASSERT_NE(z, nullptr);
  ASSERT_EQ(z->KeyGetCount(), 4);
  for (int k = 1; k < 4; ++k) EXPECT_NEAR(z->KeyGetValue(k) - z->KeyGetValue(k - 1), 100.0, 1e-3) << "key " << k;
}

TEST_F(MatrixChannelsTest, TheOtherTransformElementsOfTheNodeComposeWithTheAnimatedMatrix) {
  Read(BoxWith("<translate>0 0 5</translate><matrix sid=\"transform\">" + MatrixText(KeyMatrix(0)) +
               "</matrix><scale>2 2 2</scale>"),
       Animation("a", "box/transform", kFourMatrices));
  ASSERT_NO_FATAL_FAILURE(ExpectKeyTimes({0, 1, 2, 3}));
  for (int k = 0; k < 4; ++k) {
    const ColladaMatrix expected = TranslateMatrix(0, 0, 5) * KeyMatrix(k) * ScaleMatrix(2, 2, 2);
    EXPECT_TRUE(KitMatrixIs(CurveMatrix(k), expected, kCurvePrecision)) << "key " << k;
  }
}

TEST_F(MatrixChannelsTest, ChannelsOnSingleEntriesShareTheUnionOfTheirKeyTimes) {
  // (0)(3) and (1)(3) are the translation's X and Y; each holds its value beyond its keys and
  // is linear between them.
  Read(BoxWith("<matrix sid=\"transform\">1 0 0 0 0 1 0 0 0 0 1 4 0 0 0 1</matrix>"),
       Animation("x", "box/transform(0)(3)", {"0 1", "1 3"}) + Animation("y", "box/transform(1)(3)", {"0.5 1", "7 9"}));
  ASSERT_NO_FATAL_FAILURE(ExpectKeyTimes({0, 0.5, 1}));
  const double x[] = {1, 2, 3}, y[] = {7, 7, 9};
  for (int k = 0; k < 3; ++k) {
    EXPECT_TRUE(KitMatrixIs(CurveMatrix(k), TranslateMatrix(x[k], y[k], 4), kCurvePrecision)) << "key " << k;
  }
}

TEST_F(MatrixChannelsTest, TheTraditionalReadingLeavesMatrixChannelsOut) {
  const zyldae::ReadResult traditional =
      ReadText(AnimatedDocument("", BoxWith("<matrix sid=\"transform\">" + MatrixText(KeyMatrix(0)) + "</matrix>"),
                                Animation("a", "box/transform", kFourMatrices)));
  ASSERT_TRUE(traditional.ok);
  EXPECT_EQ(CountMessage(traditional, "Warning: unknown animation channel: box/transform"), 1);
  EXPECT_EQ(FindCurve(traditional.scene, "box", KZylTakeNode::eTranslationX), nullptr);
}

TEST_F(MatrixChannelsTest, AMatrixSourceOfTheWrongSizeIsReported) {
  Keys short_ = kFourMatrices;
  short_.times = "0 1 2 3 4";
  short_.interpolations = "";
  Read(BoxWith("<matrix sid=\"transform\">" + MatrixText(KeyMatrix(0)) + "</matrix>"),
       Animation("a", "box/transform", short_));
  EXPECT_EQ(CountMessage(read, "Warning: Number of outputs (64), in tangents (0), out tangents (0)  or interpolation (0) "
                               "not the number expected (80)."),
            1);
}

}  // namespace
}  // namespace zyltest
