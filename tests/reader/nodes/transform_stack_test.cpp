// The complete reading composes a node's transform elements in document order: the node's
// local matrix is their product, computed here on its own from the document's numbers.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/collada_matrices.h"
#include "tests/support/documents.h"

namespace zyltest {
namespace {

using zylsdk::KZylNode;
using zylsdk::KZylVector4;

constexpr double kRelative = 1e-9;
const char* const kShearWarning = "Warning: transform with shear read as the nearest translation, rotation and scaling";

// Transform elements with their matrices, in document order.
struct Stack {
  std::string xml;
  ColladaMatrix product = IdentityMatrix();

  Stack& Add(const std::string& element, const ColladaMatrix& matrix) {
    xml += element;
    product = product * matrix;
    return *this;
  }
  Stack& Translate(double x, double y, double z) {
    return Add("<translate>" + Numbers({x, y, z}) + "</translate>", TranslateMatrix(x, y, z));
  }
  Stack& Scale(double x, double y, double z) {
    return Add("<scale>" + Numbers({x, y, z}) + "</scale>", ScaleMatrix(x, y, z));
  }
  Stack& Rotate(double x, double y, double z, double degrees) {
    return Add("<rotate>" + Numbers({x, y, z, degrees}) + "</rotate>", RotateMatrix(x, y, z, degrees));
  }
  Stack& Matrix(const ColladaMatrix& matrix) { return Add("<matrix>" + MatrixText(matrix) + "</matrix>", matrix); }
  Stack& LookAt(const std::array<double, 3>& eye, const std::array<double, 3>& at, const std::array<double, 3>& up) {
    return Add("<lookat>" + Numbers({eye[0], eye[1], eye[2], at[0], at[1], at[2], up[0], up[1], up[2]}) + "</lookat>",
               LookAtMatrix(eye, at, up));
  }

  static std::string Numbers(const std::vector<double>& values) {
    std::string text;
    for (double value : values) text += (text.empty() ? "" : " ") + std::to_string(value);
    return text;
  }
};

std::string SceneOf(const std::string& nodes) {
  return Collada("<library_visual_scenes><visual_scene id=\"vs\">" + nodes +
                 "</visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene>");
}

std::string NodeOf(const Stack& stack, const std::string& id = "n") {
  return "<node id=\"" + id + "\">" + stack.xml + "</node>";
}

const KZylNode* Node(const zyldae::ReadResult& read, const char* name) {
  return read.scene ? read.scene->FindNodeByName(name) : nullptr;
}

// Reads the node of `stack` completely and checks its local matrix against the product.
void ExpectProduct(const Stack& stack) {
  const zyldae::ReadResult read = ReadText(SceneOf(NodeOf(stack)), Complete());
  ASSERT_TRUE(read.ok);
  const KZylNode* node = Node(read, "n");
  ASSERT_NE(node, nullptr);
  EXPECT_TRUE(KitMatrixIs(node->GetLocalFromDefaultTake(), stack.product, kRelative)) << stack.xml;
  EXPECT_EQ(CountMessage(read, kShearWarning), 0);
}

ColladaMatrix RigidMatrix() { return TranslateMatrix(3, -1, 2) * RotateMatrix(1, 2, 3, 40); }

TEST(TransformStack, RepeatedTranslatesScalesAndMatricesCompose) {
  ExpectProduct(Stack().Translate(1, 2, 3).Scale(2, 2, 2).Translate(4, 5, 6).Matrix(RigidMatrix()).Scale(0.5, 0.5, 0.5)
                    .Matrix(RigidMatrix()));
}

TEST(TransformStack, RotateTranslateRotateComposes) {
  ExpectProduct(Stack().Rotate(0, 0, 1, 30).Translate(1, 0, 0).Rotate(0, 1, 0, 45));
}

TEST(TransformStack, MatrixAfterTranslateRotateScaleComposes) {
  ExpectProduct(Stack().Translate(1, 2, 3).Rotate(1, 0, 0, 20).Scale(2.5, 2.5, 2.5).Matrix(RigidMatrix()));
  // An uneven scaling listed last applies first, along the node's own axes.
  ExpectProduct(Stack().Translate(1, 2, 3).Matrix(RigidMatrix()).Rotate(1, 0, 0, 20).Scale(2, 3, 4));
}

TEST(TransformStack, RotationsAboutAnyAxisCompose) {
  ExpectProduct(Stack().Rotate(1, 1, 0, 30).Rotate(0, 2, 1, -75).Rotate(0, 0, 3, 45));
}

TEST(TransformStack, LookAtComposesWhereverItStands) {
  ExpectProduct(Stack().LookAt({1, 2, 3}, {0, 0, 0}, {0, 1, 0}));
  ExpectProduct(Stack().Translate(0, 1, 0).LookAt({1, 2, 3}, {-1, 0, 4}, {0, 0, 1}).Scale(2, 2, 2));
  ExpectProduct(Stack().Rotate(0, 1, 0, 90).LookAt({0, 0, 5}, {0, 0, 0}, {1, 1, 0}).Translate(1, 1, 1));
}

TEST(TransformStack, LookAtOnAChildNodeComposes) {
  const Stack parent = Stack().Translate(0, 0, 2);
  const Stack child = Stack().LookAt({4, 0, 0}, {0, 0, 0}, {0, 1, 0});
  const zyldae::ReadResult read =
      ReadText(SceneOf("<node id=\"p\">" + parent.xml + NodeOf(child, "c") + "</node>"), Complete());
  ASSERT_TRUE(read.ok);
  ASSERT_NE(Node(read, "c"), nullptr);
  EXPECT_TRUE(KitMatrixIs(Node(read, "c")->GetGlobalFromDefaultTake(), parent.product * child.product, kRelative));
}

TEST(TransformStack, ACamerasLookAtComposesUnderItsPostRotation) {
  const Stack stack = Stack().Translate(0, 0, 1).LookAt({3, 4, 5}, {0, 0, 0}, {0, 1, 0});
  const std::string camera =
      "<library_cameras><camera id=\"cam\"><optics><technique_common><perspective><yfov>45</yfov><znear>1</znear>"
      "<zfar>100</zfar></perspective></technique_common></optics></camera></library_cameras>";
  const std::string nodes = "<node id=\"n\">" + stack.xml + "<instance_camera url=\"#cam\"/></node>";
  const std::string document = Collada(camera + "<library_visual_scenes><visual_scene id=\"vs\">" + nodes +
                                       "</visual_scene></library_visual_scenes><scene><instance_visual_scene "
                                       "url=\"#vs\"/></scene>");
  const zyldae::ReadResult read = ReadText(document, Complete());
  const KZylNode* node = Node(read, "n");
  ASSERT_NE(node, nullptr);
  // The kit's cameras look along X: the post-rotation that turns them comes before the node's matrix.
  const zylsdk::KZylXMatrix post = zylsdk::RotationMatrix(node->GetPostRotation(zylsdk::eSourcePivot), zylsdk::eEulerXYZ);
  EXPECT_EQ(node->GetPostRotation(zylsdk::eSourcePivot), KZylVector4(0, -90, 0));
  EXPECT_TRUE(KitMatrixIs(post * node->GetLocalFromDefaultTake(), stack.product, kRelative));
}

TEST(TransformStack, RotationsAsWrittenStayWhenTheyHoldTheProduct) {
  const Stack stack = Stack().Rotate(0, 0, 1, 30).Rotate(0, 1, 0, 20).Rotate(1, 0, 0, 10);
  const zyldae::ReadResult read = ReadText(SceneOf(NodeOf(stack)), Complete());
  const KZylNode* node = Node(read, "n");
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->GetDefaultR(), KZylVector4(10, 20, 30, 0));
  EXPECT_TRUE(KitMatrixIs(node->GetLocalFromDefaultTake(), stack.product, kRelative));
}

TEST(TransformStack, ATranslateBeforeRotationsMovesOnlyTheTranslation) {
  // The translation is rotated by what follows it; the angles stay as written.
  const Stack stack = Stack().Rotate(1, 0, 0, 90).Translate(0, 1, 0);
  const zyldae::ReadResult read = ReadText(SceneOf(NodeOf(stack)), Complete());
  const KZylNode* node = Node(read, "n");
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->GetDefaultR(), KZylVector4(90, 0, 0, 0));
  EXPECT_NEAR(node->GetDefaultT()[2], 1.0, 1e-15);
  EXPECT_TRUE(KitMatrixIs(node->GetLocalFromDefaultTake(), stack.product, kRelative));
}

TEST(TransformStack, PivotsThatHoldTheProductStay) {
  const std::string pivots =
      "<translate sid=\"translate\">1 2 3</translate><translate sid=\"rotatePivot\">0 1 0</translate>"
      "<rotate sid=\"rotateZ\">0 0 1 30</rotate><translate sid=\"rotatePivotInverse\">0 -1 0</translate>";
  const ColladaMatrix product = TranslateMatrix(1, 2, 3) * TranslateMatrix(0, 1, 0) * RotateMatrix(0, 0, 1, 30) *
                                TranslateMatrix(0, -1, 0);
  const zyldae::ReadResult read = ReadText(SceneOf("<node id=\"n\">" + pivots + "</node>"), Complete());
  const KZylNode* node = Node(read, "n");
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->GetRotationPivot(zylsdk::eSourcePivot), KZylVector4(0, 1, 0, 0));
  EXPECT_TRUE(KitMatrixIs(node->GetLocalFromDefaultTake(), product, kRelative));
}

TEST(TransformStack, TheTraditionalReadingKeepsTheLastTranslate) {
  const zyldae::ReadResult read = ReadText(SceneOf(NodeOf(Stack().Translate(1, 2, 3).Translate(4, 5, 6))));
  ASSERT_NE(Node(read, "n"), nullptr);
  EXPECT_EQ(Node(read, "n")->GetDefaultT(), KZylVector4(4, 5, 6, 1));
}

TEST(TransformStack, ShearIsReadAsTheNearestTransformWithOneWarning) {
  // Scaling a rotated frame unevenly shears it.
  const Stack sheared = Stack().Scale(1, 3, 1).Rotate(0, 0, 1, 45);
  const zyldae::ReadResult read =
      ReadText(SceneOf(NodeOf(sheared, "a") + NodeOf(sheared, "b")), Complete());
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(CountMessage(read, kShearWarning), 1);
  const KZylNode* node = Node(read, "a");
  ASSERT_NE(node, nullptr);
  EXPECT_FALSE(KitMatrixIs(node->GetLocalFromDefaultTake(), sheared.product, 1e-3));
  EXPECT_EQ(CountMessage(ReadText(SceneOf(NodeOf(sheared, "a"))), kShearWarning), 0);
}

TEST(TransformStack, SkewComposesInsteadOfBeingSkipped) {
  const std::string skewed = "<node id=\"n\"><skew>45 0 1 0 1 0 0</skew></node>";
  const char* skipped = "Warning: transform is not supported by ZYL: skew";
  const zyldae::ReadResult complete = ReadText(SceneOf(skewed), Complete());
  EXPECT_EQ(CountMessage(complete, skipped), 0);
  EXPECT_EQ(CountMessage(complete, kShearWarning), 1);
  EXPECT_EQ(CountMessage(ReadText(SceneOf(skewed)), skipped), 1);
  // p' = p + tan(45) (r . p) t moves the Y axis onto (1, 1, 0): no rotation and scaling hold that.
  const KZylNode* node = Node(complete, "n");
  ASSERT_NE(node, nullptr);
  ColladaMatrix skew = IdentityMatrix();
  skew[0][1] = 1.0;
  EXPECT_FALSE(KitMatrixIs(node->GetLocalFromDefaultTake(), skew, 1e-3));
}

}  // namespace
}  // namespace zyltest
