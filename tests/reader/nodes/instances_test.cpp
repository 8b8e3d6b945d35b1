// Node attributes from instances: one fresh attribute per kind, the orientation fix-ups of
// cameras and lights, look-at, and the search of the nodes that instance an element.

#include "tests/reader/nodes/library_objects.h"
#include "tests/reader/nodes/scene_documents.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;
using zyltest::FindDumpNode;
using zyltest::SceneDocument;

constexpr double kTolerance = 1e-9;

void ExpectVector(const KZylVector4& actual, double x, double y, double z) {
  EXPECT_NEAR(actual[0], x, kTolerance);
  EXPECT_NEAR(actual[1], y, kTolerance);
  EXPECT_NEAR(actual[2], z, kTolerance);
}

class NodeAttributeTest : public zyltest::ReaderTest {
 protected:
  // Gives a fresh node "n" the attribute for `library`, with `xml` as its node element.
  bool Give(KZylNodeAttribute* library, const std::string& xml = "<node id=\"n\"/>") {
    node = KZylNode::Create(&manager, "n");
    return reader->ImportNodeAttribute(Parse(xml), *node, library);
  }
  KZylNode* node = nullptr;
};

TEST_F(NodeAttributeTest, NullGivesAFreshNull) {
  KZylNull* library = KZylNull::Create(&manager, "");
  ASSERT_TRUE(Give(library));
  ASSERT_NE(node->GetNodeAttribute(), nullptr);
  EXPECT_NE(node->GetNodeAttribute(), library);
  EXPECT_EQ(node->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eNull);
}

TEST_F(NodeAttributeTest, MarkerFails) {
  EXPECT_FALSE(Give(KZylMarker::Create(&manager, "")));
  EXPECT_EQ(CountMessage("ERROR: bad geometry: marker not implemented."), 1);
  EXPECT_EQ(node->GetNodeAttribute(), nullptr);
}

TEST_F(NodeAttributeTest, CameraSwitcherFails) {
  EXPECT_FALSE(Give(KZylCameraSwitcher::Create(&manager, "")));
  EXPECT_EQ(CountMessage("ERROR: bad node attributed: camera switcher not implemented."), 1);
}

TEST_F(NodeAttributeTest, NurbAndPatchFail) {
  EXPECT_FALSE(Give(KZylNurb::Create(&manager, "")));
  EXPECT_FALSE(Give(KZylPatch::Create(&manager, "")));
  EXPECT_EQ(CountMessage("ERROR: bad geometry in node n: nurb and patches not implemented.\n"), 2);
}

TEST_F(NodeAttributeTest, UnknownKindWarnsAndLeavesNoAttribute) {
  EXPECT_TRUE(Give(KZylNodeAttribute::Create(&manager, "")));
  EXPECT_EQ(CountMessage("Warning: unknown geometry for node n"), 1);
  EXPECT_EQ(node->GetNodeAttribute(), nullptr);
}

TEST_F(NodeAttributeTest, SkeletonGivesAFreshSkeletonWithNothingCopied) {
  KZylSkeleton* library = KZylSkeleton::Create(&manager, "");
  library->SetSkeletonType(KZylSkeleton::eEffector);
  ASSERT_TRUE(Give(library));
  ASSERT_EQ(node->GetNodeAttribute()->GetAttributeType(), KZylNodeAttribute::eSkeleton);
  EXPECT_NE(node->GetNodeAttribute(), library);
  EXPECT_EQ(static_cast<KZylSkeleton*>(node->GetNodeAttribute())->GetSkeletonType(), KZylSkeleton::eRoot);
}

TEST_F(NodeAttributeTest, OrientedLightsGetAPostRotationAndPointLightsNone) {
  KZylLight* library = KZylLight::Create(&manager, "");
  library->SetDefaultColor(KZylColor(0.5, 0.25, 0.125));
  for (KZylLight::ELightType type : {KZylLight::eDirectional, KZylLight::eSpot}) {
    library->SetLightType(type);
    ASSERT_TRUE(Give(library));
    KZylLight* light = static_cast<KZylLight*>(node->GetNodeAttribute());
    EXPECT_NE(light, library);
    EXPECT_EQ(light->GetLightType(), type);
    EXPECT_EQ(light->GetDefaultColor(), KZylColor(0.5, 0.25, 0.125));
    ExpectVector(node->GetPostRotation(eSourcePivot), -90, 0, 0);
    EXPECT_TRUE(node->GetRotationActive());
  }
  library->SetLightType(KZylLight::ePoint);
  ASSERT_TRUE(Give(library));
  ExpectVector(node->GetPostRotation(eSourcePivot), 0, 0, 0);
  EXPECT_FALSE(node->GetRotationActive());
}

TEST_F(NodeAttributeTest, ACameraWithoutLookAtStillGetsItsPostRotation) {
  KZylCamera* library = KZylCamera::Create(&manager, "");
  library->SetNearPlane(0.5);
  ASSERT_TRUE(Give(library));
  KZylCamera* camera = static_cast<KZylCamera*>(node->GetNodeAttribute());
  EXPECT_NE(camera, library);
  EXPECT_EQ(camera->GetNearPlane(), 0.5);
  ExpectVector(node->GetPostRotation(eSourcePivot), 0, -90, 0);
  EXPECT_TRUE(node->GetRotationActive());
  ExpectVector(node->GetDefaultR(), 0, 0, 0);
}

TEST_F(NodeAttributeTest, LookAtFillsTheCameraAndTheNodesRotation) {
  ASSERT_TRUE(Give(KZylCamera::Create(&manager, ""), "<node id=\"n\"><lookat>10 0 0  0 0 0  0 3 0</lookat></node>"));
  KZylCamera* camera = static_cast<KZylCamera*>(node->GetNodeAttribute());
  ExpectVector(camera->GetPosition(), 10, 0, 0);
  ExpectVector(camera->GetDefaultCameraInterestPosition(), 0, 0, 0);
  // The up vector arrives normalised.
  ExpectVector(camera->GetUpVector(), 0, 1, 0);
  // Looking down -X from +X: the view is turned 90 degrees about Y.
  ExpectVector(node->GetDefaultR(), 0, 90, 0);
  EXPECT_EQ(camera->GetFocusDistanceSource(), KZylCamera::eCameraInterest);
  EXPECT_NEAR(camera->GetSpecificDistance(), 10.0, kTolerance);
  ExpectVector(node->GetPostRotation(eSourcePivot), 0, -90, 0);
}

TEST_F(NodeAttributeTest, ImportLookAtBuildsTheMatrixRows) {
  KZylVector4 position, interest, up;
  KZylXMatrix matrix;
  EXPECT_FALSE(reader->ImportLookAt(Parse("<node/>"), position, interest, up, matrix));
  ASSERT_TRUE(reader->ImportLookAt(Parse("<node><lookat>1 2 3  1 2 0  0 0 0</lookat></node>"), position, interest, up,
                                   matrix));
  ExpectVector(position, 1, 2, 3);
  ExpectVector(interest, 1, 2, 0);
  // A zero up vector stays zero, and so does the side; nothing is NaN.
  ExpectVector(up, 0, 0, 0);
  ExpectVector(matrix.GetRow(0), 0, 0, 0);
  ExpectVector(matrix.GetRow(2), 0, 0, 1);
  ExpectVector(matrix.GetRow(3), 1, 2, 0);
}

TEST_F(NodeAttributeTest, MeshGivesAnEqualIndependentMeshAndShadingMode) {
  KZylMesh* library = zyltest::MakeLibraryMesh(manager, {"slot"});
  ASSERT_TRUE(Give(library));
  KZylMesh* first = static_cast<KZylMesh*>(node->GetNodeAttribute());
  KZylNode* firstNode = node;
  ASSERT_TRUE(Give(library));
  KZylMesh* second = static_cast<KZylMesh*>(node->GetNodeAttribute());
  ASSERT_NE(first, second);
  EXPECT_NE(first, library);
  EXPECT_EQ(firstNode->GetShadingMode(), eLightTextureShading);
  for (KZylMesh* mesh : {first, second}) {
    EXPECT_EQ(mesh->GetControlPoints(), library->GetControlPoints());
    EXPECT_EQ(mesh->GetPolygonVertices(), library->GetPolygonVertices());
    EXPECT_EQ(mesh->GetLayer(0)->GetMaterials()->GetDirectArray(), library->GetLayer(0)->GetMaterials()->GetDirectArray());
  }
  first->SetControlPointAt(KZylVector4(9, 9, 9), 0);
  EXPECT_NE(second->GetControlPointAt(0), first->GetControlPointAt(0));
  EXPECT_NE(library->GetControlPointAt(0), first->GetControlPointAt(0));
}

class FindInstancesTest : public zyltest::ReaderTest {
 protected:
  void SetUp() override {
    for (const char* name : {"A", "B", "C"}) {
      KZylNode* node = KZylNode::Create(&manager, name);
      scene->GetRootNode()->AddChild(node);
    }
  }
  std::vector<KZylNode*> Find(const std::string& xml, const char* url) {
    return reader->FindInstances(Parse(xml), scene->GetRootNode(), url).Std();
  }
  KZylNode* Named(const char* name) { return scene->FindNodeByName(name); }
};

TEST_F(FindInstancesTest, AncestorComesBeforeItsDescendant) {
  auto found = Find("<visual_scene><node id=\"a\" name=\"A\"><instance_camera url=\"#cam\"/>"
                    "<node id=\"b\" name=\"B\"><instance_camera url=\"#cam\"/></node></node>"
                    "<node name=\"C\"><instance_camera url=\"#cam\"/></node></visual_scene>",
                    "#cam");
  EXPECT_EQ(found, (std::vector<KZylNode*>{Named("A"), Named("B"), Named("C")}));
}

TEST_F(FindInstancesTest, OnlyTheFirstKindFoundIsLookedAt) {
  // A camera instance comes before a light instance, whatever the document order.
  auto found = Find("<visual_scene><node name=\"A\"><instance_light url=\"#x\"/><instance_camera url=\"#y\"/></node>"
                    "<node name=\"B\"><instance_camera url=\"#x\"/><instance_camera url=\"#y\"/></node>"
                    "<node name=\"C\"><instance_geometry url=\"#x\"/><instance_controller url=\"#y\"/></node>"
                    "</visual_scene>",
                    "#x");
  EXPECT_EQ(found, (std::vector<KZylNode*>{Named("B")}));
  EXPECT_EQ(Find("<node name=\"C\"><instance_geometry url=\"#x\"/><instance_light url=\"#x\"/></node>", "#x"),
            (std::vector<KZylNode*>{Named("C")}));
}

TEST_F(FindInstancesTest, NodesAreFoundByNameAndAMissingNameGivesANull) {
  auto found = Find("<visual_scene><node id=\"A\" name=\"Other\"><instance_light url=\"#L\"/></node></visual_scene>",
                    "#L");
  EXPECT_EQ(found, (std::vector<KZylNode*>{nullptr}));
}

TEST_F(FindInstancesTest, TheUrlIsComparedWithItsHash) {
  EXPECT_TRUE(Find("<node name=\"A\"><instance_light url=\"#L\"/></node>", "L").empty());
}

TEST_F(FindInstancesTest, OnlyVisualScenesAndNodesAreLookedInto) {
  EXPECT_TRUE(Find("<library_visual_scenes><visual_scene><node name=\"A\"><instance_light url=\"#L\"/></node>"
                   "</visual_scene></library_visual_scenes>",
                   "#L")
                  .empty());
  EXPECT_TRUE(Find("<visual_scene><extra><node name=\"A\"><instance_light url=\"#L\"/></node></extra></visual_scene>",
                   "#L")
                  .empty());
}

const char* const kCameraLibrary =
    "<library_cameras><camera id=\"cam\"><optics><technique_common><perspective><yfov>30</yfov><znear>0.1</znear>"
    "</perspective></technique_common></optics></camera></library_cameras>";

TEST(InstanceDocument, TwoNodesInstancingOneCameraGetTwoEqualCameras) {
  const std::string document = SceneDocument(kCameraLibrary, "<node id=\"c1\"><instance_camera url=\"#cam\"/></node>"
                                                             "<node id=\"c2\"><instance_camera url=\"#cam\"/></node>");
  zyldae::ReadResult read = zyltest::ReadText(document);
  ASSERT_TRUE(read.ok);
  KZylCamera* first = static_cast<KZylCamera*>(read.scene->FindNodeByName("c1")->GetNodeAttribute());
  KZylCamera* second = static_cast<KZylCamera*>(read.scene->FindNodeByName("c2")->GetNodeAttribute());
  ASSERT_NE(first, nullptr);
  ASSERT_NE(first, second);
  first->SetNearPlane(7.0);
  EXPECT_EQ(second->GetNearPlane(), 0.1);

  zyldae::Json dump = zyltest::DumpText(document);
  const zyldae::Json* c1 = FindDumpNode(dump["scene"]["root"], "c1");
  const zyldae::Json* c2 = FindDumpNode(dump["scene"]["root"], "c2");
  ASSERT_TRUE(c1 && c2);
  EXPECT_EQ((*c1)["attribute"], (*c2)["attribute"]);
  EXPECT_EQ((*c1)["attribute"]["type"], "camera");
  EXPECT_EQ((*c1)["attribute"]["fieldOfView"], 30.0);
  EXPECT_EQ((*c1)["attribute"]["apertureMode"], 2);
  EXPECT_EQ((*c1)["postRotation"], zyldae::Json::parse("[0, -90, 0, 0]"));
}

TEST(InstanceDocument, LookAtReachesTheDump) {
  zyldae::Json dump = zyltest::DumpText(
      SceneDocument(kCameraLibrary, "<node id=\"c\"><lookat>10 0 0 0 0 0 0 3 0</lookat><instance_camera url=\"#cam\"/>"
                                    "</node>"));
  ASSERT_EQ(dump["ok"], true);
  const zyldae::Json* c = FindDumpNode(dump["scene"]["root"], "c");
  ASSERT_NE(c, nullptr);
  EXPECT_EQ((*c)["attribute"]["position"], zyldae::Json::parse("[10, 0, 0, 1]"));
  EXPECT_EQ((*c)["attribute"]["interestPosition"], zyldae::Json::parse("[0, 0, 0, 1]"));
  EXPECT_EQ((*c)["attribute"]["upVector"], zyldae::Json::parse("[0, 1, 0, 0]"));
  EXPECT_EQ((*c)["attribute"]["specificDistance"], 10.0);
  EXPECT_NEAR((*c)["rotation"][1].get<double>(), 90.0, kTolerance);
}

}  // namespace
