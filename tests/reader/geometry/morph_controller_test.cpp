// Morph controllers read on their own, and shapes connected to a mesh: targets and weights,
// the method warning, shape records, and every message of the morph import.

#include <gtest/gtest.h>

#include "tests/reader/geometry/skin_morph_xml.h"
#include "tests/reader/nodes/scene_documents.h"
#include "tests/support/reader_fixture.h"

namespace zyltest {
namespace {

using namespace zylsdk;

class MorphControllerTest : public ReaderTest {
 protected:
  const ControllerRecord* Record(const char* id) const { return reader->GetState().controllers.Lookup(id); }
  const ShapeRecordList* Shapes(const char* key) const { return reader->GetState().shapes.Lookup(key); }

  // Registers the triangles "face" (the base), "smile" and "frown".
  void ImportGeometries() {
    ASSERT_TRUE(reader->ImportGeometry(Parse(TriangleGeometry("face", "0 0 0  1 0 0  0 1 0"))));
    ASSERT_TRUE(reader->ImportGeometry(Parse(TriangleGeometry("smile", "0 0 1  1 0 1  0 1 1"))));
    ASSERT_TRUE(reader->ImportGeometry(Parse(TriangleGeometry("frown", "0 0 -1  1 0 -1  0 1 -1"))));
  }
  // A copy of the base mesh, as a node that instances the morph receives it.
  KZylMesh* InstancedBase() {
    KZylMesh* mesh = KZylMesh::Create(&manager, "");
    reader->CopyMesh(mesh, static_cast<KZylMesh*>(reader->GetState().nodeAttributes.Lookup("face")));
    return mesh;
  }
  bool Targets(const std::string& morph) {
    return reader->ImportTargetsInController(Parse(morph), targets, weightSource, weights);
  }

  KArrayTemplate<KString> targets;
  KString weightSource;
  KArrayTemplate<double> weights;
};

TEST_F(MorphControllerTest, AMorphIsRegisteredWithItsTargetsAndWeights) {
  ASSERT_TRUE(reader->ImportController(Parse(Controller("face-morph", Morph("face", "smile frown", "0.5 1")))));
  const ControllerRecord* record = Record("face-morph");
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->source, "#face");
  EXPECT_EQ(record->morphTargets, (KArrayTemplate<KString>{"smile", "frown"}));
  EXPECT_EQ(record->morphWeights, (KArrayTemplate<double>{0.5, 1}));
  EXPECT_EQ(record->morphWeightSource, "morph-weights");
  // No skin: no clusters and no pose.
  EXPECT_TRUE(record->clusters.IsEmpty());
  EXPECT_EQ(record->bindPose, nullptr);
  EXPECT_TRUE(Messages().empty());
  EXPECT_TRUE(reader->GetStatus());
}

TEST_F(MorphControllerTest, AnotherMethodIsReadAsRelativeWithAWarning) {
  ASSERT_TRUE(reader->ImportController(Parse(Controller("m", Morph("face", "smile", "1", "NORMALIZED")))));
  EXPECT_EQ(Messages(),
            (std::vector<std::string>{
                "Warning: Morph m has method NORMALIZED, which is not supported. Morph will be read as RELATIVE."}));
  EXPECT_NE(Record("m"), nullptr);
}

TEST_F(MorphControllerTest, AMissingMethodWarnsWithAnEmptyMethod) {
  std::string morph = Morph("face", "smile", "1");
  morph.replace(morph.find(" method=\"RELATIVE\""), std::string(" method=\"RELATIVE\"").size(), "");
  ASSERT_TRUE(reader->ImportController(Parse(Controller("m", morph))));
  EXPECT_EQ(CountMessage("Warning: Morph m has method , which is not supported. Morph will be read as RELATIVE."), 1);
}

TEST_F(MorphControllerTest, TheMethodIsComparedExactly) {
  ASSERT_TRUE(reader->ImportController(Parse(Controller("m", Morph("face", "smile", "1", "relative")))));
  EXPECT_EQ(
      CountMessage("Warning: Morph m has method relative, which is not supported. Morph will be read as RELATIVE."), 1);
}

TEST_F(MorphControllerTest, ThreeTargetsAndTwoWeightsFail) {
  EXPECT_FALSE(reader->ImportController(Parse(Controller("m", Morph("face", "a b c", "0.5 1")))));
  EXPECT_EQ(CountMessage("ERROR: in controller, number of targets 3 is different than number of weights 2"), 1);
  EXPECT_EQ(Record("m"), nullptr);
  EXPECT_FALSE(reader->GetStatus());
}

TEST_F(MorphControllerTest, ASecondMorphFails) {
  const std::string morph = Morph("face", "smile", "1");
  EXPECT_FALSE(reader->ImportController(Parse(Controller("twice", morph + morph))));
  EXPECT_EQ(CountMessage("ERROR: more than one morph defined for library twice"), 1);
  EXPECT_EQ(Record("twice"), nullptr);
}

TEST_F(MorphControllerTest, AMorphWithoutSourceIsRefused) {
  std::string morph = Morph("face", "smile", "1");
  morph.replace(morph.find(" source=\"#face\""), std::string(" source=\"#face\"").size(), "");
  EXPECT_FALSE(reader->ImportController(Parse(Controller("m", morph))));
  EXPECT_EQ(CountMessage("ERROR: Controller is missing a source"), 1);
}

TEST_F(MorphControllerTest, MissingTargetsFail) {
  EXPECT_FALSE(Targets("<morph source=\"#face\"/>"));
  EXPECT_EQ(CountMessage("ERROR: <targets> node not found in controller\n"), 1);
  EXPECT_FALSE(reader->GetStatus());
}

TEST_F(MorphControllerTest, EmptyTargetsOrWeightsFailWithTheSkinsText) {
  EXPECT_FALSE(
      Targets("<morph>" + FloatSource("w", "1", 1) + "<targets>" + Input("MORPH_WEIGHT", "#w") + "</targets></morph>"));
  EXPECT_FALSE(Targets("<morph>" + NameSource("t", "smile", "IDREF_array") + FloatSource("w", "", 1) + "<targets>" +
                       Input("MORPH_TARGET", "#t") + Input("MORPH_WEIGHT", "#w") + "</targets></morph>"));
  EXPECT_EQ(CountMessage("ERROR: Unable to find weight or bind matrices for controller"), 2);
}

TEST_F(MorphControllerTest, AnUnknownInputOrUnreadableSourceFails) {
  EXPECT_FALSE(Targets("<morph><targets>" + Input("JOINT", "#t") + "</targets></morph>"));
  EXPECT_EQ(CountMessage("ERROR: JOINT not supported in <input>"), 1);
  EXPECT_FALSE(Targets("<morph><targets>" + Input("MORPH_TARGET", "#absent") + "</targets></morph>"));
  EXPECT_EQ(CountMessage("ERROR: reading array in <source>: #absent"), 1);
  EXPECT_FALSE(Targets("<morph>" + NameSource("t", "smile", "IDREF_array") + "<targets>" + Input("MORPH_TARGET", "#t") +
                       Input("MORPH_WEIGHT", "#t") + "</targets></morph>"));
  EXPECT_EQ(CountMessage("ERROR: reading array in <source>: #t"), 1);
}

TEST_F(MorphControllerTest, TheWeightSourceIsTheAttributeWithoutItsFirstCharacter) {
  ASSERT_TRUE(Targets("<morph>" + NameSource("t", "smile frown", "IDREF_array") + FloatSource("w", "0.25 0.75", 1) +
                      "<targets>" + Input("MORPH_TARGET", "#t") + Input("MORPH_WEIGHT", "#w") + "</targets></morph>"));
  EXPECT_EQ(weightSource, "w");
  EXPECT_EQ(targets, (KArrayTemplate<KString>{"smile", "frown"}));
  EXPECT_EQ(weights, (KArrayTemplate<double>{0.25, 0.75}));
}

TEST_F(MorphControllerTest, ShapesTakeTheTargetsPointsAndTheDocumentsWeights) {
  ImportGeometries();
  KZylMesh* mesh = InstancedBase();
  ASSERT_TRUE(reader->ConnectShapes(mesh, "head", {"smile", "frown"}, "face-weights", {0.5, 1}));
  ASSERT_EQ(mesh->GetShapeCount(), 2);
  EXPECT_EQ(mesh->GetShapeName(0), "smile");
  EXPECT_EQ(mesh->GetShapeName(1), "frown");
  EXPECT_EQ(mesh->GetShape(0)->GetControlPointAt(2), KZylVector4(0, 1, 1, 0));
  EXPECT_EQ(mesh->GetShape(1)->GetControlPointAt(1), KZylVector4(1, 0, -1, 0));
  // Weights as the document writes them, from 0 to 1.
  EXPECT_EQ(mesh->FindProperty("smile").GetDouble(), 0.5);
  EXPECT_EQ(mesh->FindProperty("frown").GetDouble(), 1.0);
  // The target meshes themselves are untouched.
  EXPECT_EQ(static_cast<KZylMesh*>(reader->GetState().nodeAttributes.Lookup("smile"))->GetShapeCount(), 0);
  // Normals of the mesh and its shapes are per polygon vertex afterwards.
  EXPECT_EQ(mesh->GetNormals()->GetMappingMode(), KZylLayerElement::eByPolygonVertex);
  for (int i = 0; i < 2; ++i) {
    ASSERT_NE(mesh->GetShape(i)->GetNormals(), nullptr);
    EXPECT_EQ(mesh->GetShape(i)->GetNormals()->GetMappingMode(), KZylLayerElement::eByPolygonVertex);
    EXPECT_EQ(mesh->GetShape(i)->GetNormals()->GetDirectArray().GetCount(), 3);
  }
  EXPECT_TRUE(reader->GetStatus());

  const ShapeRecordList* records = Shapes("face-weights");
  ASSERT_NE(records, nullptr);
  ASSERT_EQ(records->GetCount(), 2);
  const ShapeRecord& frown = (*records)[1];
  EXPECT_EQ(frown.key, "face-weights");
  EXPECT_EQ(frown.name, "head");
  EXPECT_EQ(frown.targetId, "frown");
  EXPECT_EQ(frown.index, 1);
  EXPECT_EQ(frown.targetPosition, 1);
}

TEST_F(MorphControllerTest, TwoInstancesWithOneKeyShareTheirRecordList) {
  ImportGeometries();
  KZylMesh* first = InstancedBase();
  KZylMesh* second = InstancedBase();
  ASSERT_TRUE(reader->ConnectShapes(first, "a", {"smile", "frown"}, "face-weights", {0.5, 1}));
  ASSERT_TRUE(reader->ConnectShapes(second, "b", {"smile", "frown"}, "face-weights", {0.5, 1}));
  EXPECT_NE(first->GetShape(0), second->GetShape(0));
  EXPECT_EQ(reader->GetState().shapes.GetCount(), 1);
  const ShapeRecordList* records = Shapes("face-weights");
  ASSERT_NE(records, nullptr);
  ASSERT_EQ(records->GetCount(), 4);
  EXPECT_EQ((*records)[0].name, "a");
  EXPECT_EQ((*records)[2].name, "b");
  EXPECT_EQ((*records)[2].targetId, "smile");
  EXPECT_EQ((*records)[2].index, 0);
}

TEST_F(MorphControllerTest, ATargetThatIsNoGeometryIsSkippedWithAWarning) {
  ImportGeometries();
  KZylMesh* mesh = InstancedBase();
  ASSERT_TRUE(reader->ConnectShapes(mesh, "head", {"ghost", "smile", "frown"}, "w", {0.1, 0.5, 1}));
  EXPECT_EQ(Messages(), (std::vector<std::string>{"Warning: Morph target not found: ghost"}));
  ASSERT_EQ(mesh->GetShapeCount(), 2);
  EXPECT_EQ(mesh->FindProperty("smile").GetDouble(), 0.5);
  EXPECT_EQ(mesh->FindProperty("frown").GetDouble(), 1.0);
  // Records keep the targets' positions among the morph's targets.
  const ShapeRecordList* records = Shapes("w");
  ASSERT_NE(records, nullptr);
  ASSERT_EQ(records->GetCount(), 2);
  EXPECT_EQ((*records)[0].index, 0);
  EXPECT_EQ((*records)[0].targetPosition, 1);
  EXPECT_EQ((*records)[1].index, 1);
  EXPECT_EQ((*records)[1].targetPosition, 2);
}

TEST_F(MorphControllerTest, ATargetRegisteredWithoutObjectIsSkippedToo) {
  ImportGeometries();
  // An ambient light is registered without an object.
  MutableState(*reader).nodeAttributes.Add("ambient", static_cast<KZylNodeAttribute*>(nullptr));
  KZylMesh* mesh = InstancedBase();
  ASSERT_TRUE(reader->ConnectShapes(mesh, "head", {"ambient"}, "w", {1}));
  EXPECT_EQ(CountMessage("Warning: Morph target not found: ambient"), 1);
  EXPECT_EQ(mesh->GetShapeCount(), 0);
}

TEST_F(MorphControllerTest, NoTargetsChangeNothing) {
  ImportGeometries();
  KZylMesh* mesh = KZylMesh::Create(&manager, "");
  mesh->InitControlPointArray(3);
  mesh->InitNormals(3);
  ASSERT_TRUE(reader->ConnectShapes(mesh, "head", {}, "w", {}));
  // No conversion either: the normals stay per control point.
  EXPECT_EQ(mesh->GetNormals()->GetMappingMode(), KZylLayerElement::eByControlPoint);
  EXPECT_EQ(reader->GetState().shapes.GetCount(), 0);
}

TEST_F(MorphControllerTest, AShapeThatCannotBeAddedFails) {
  ImportGeometries();
  ASSERT_TRUE(reader->ImportGeometry(
      Parse(Geometry("wide", Mesh(SquarePositions("wide-pos") + PositionVertices("#wide-pos"))))));
  KZylMesh* mesh = InstancedBase();
  EXPECT_FALSE(reader->ConnectShapes(mesh, "head", {"smile", "wide", "frown"}, "w", {0.5, 0.5, 1}));
  // The kit's own reason, as a fresh mesh gives it for the same mismatch.
  KZylMesh* probe = InstancedBase();
  KZylShape* square = KZylShape::Create(&manager, "");
  square->InitControlPointArray(4);
  ASSERT_LT(probe->AddShape(square, "wide"), 0);
  EXPECT_EQ(
      CountMessage("ERROR: could not add shape wide to mesh head;\nError code is " + probe->GetLastErrorString().Std()),
      1);
  EXPECT_FALSE(probe->GetLastErrorString().IsEmpty());
  // What came before the failure stays.
  EXPECT_EQ(mesh->GetShapeCount(), 1);
  ASSERT_NE(Shapes("w"), nullptr);
  EXPECT_EQ(Shapes("w")->GetCount(), 1);
  EXPECT_FALSE(reader->GetStatus());
}

TEST_F(MorphControllerTest, AShapeNameIsFreeAgainOnceItsShapeIsDestroyed) {
  ImportGeometries();
  KZylMesh* mesh = InstancedBase();
  ASSERT_TRUE(reader->ConnectShapes(mesh, "head", {"smile"}, "w", {0.5}));
  EXPECT_FALSE(reader->ConnectShapes(mesh, "head", {"smile"}, "w", {0.5}));
  EXPECT_EQ(
      CountMessage("ERROR: could not add shape smile to mesh head;\nError code is A shape named smile already exists"),
      1);
  mesh->GetShape(0)->Destroy();
  EXPECT_EQ(mesh->GetShapeCount(), 0);
  EXPECT_TRUE(reader->ConnectShapes(mesh, "head", {"smile"}, "w", {0.25}));
  ASSERT_EQ(mesh->GetShapeCount(), 1);
  EXPECT_EQ(mesh->FindProperty("smile").GetDouble(), 0.25);
}

TEST_F(MorphControllerTest, ABadlyFormedMeshFailsTheNormalConversion) {
  ImportGeometries();
  KZylMesh* mesh = InstancedBase();
  // A polygon vertex without control point.
  mesh->BeginPolygon();
  mesh->AddPolygon(0);
  mesh->AddPolygon(7);
  mesh->AddPolygon(1);
  mesh->EndPolygon();
  EXPECT_FALSE(reader->ConnectShapes(mesh, "head", {"smile"}, "w", {0.5}));
  EXPECT_EQ(CountMessage("ERROR: Badly formed mesh or shape; Could not convert shape normals to polygon vertex."), 1);
  EXPECT_EQ(mesh->GetShapeCount(), 1);
  EXPECT_FALSE(reader->GetStatus());
}

}  // namespace
}  // namespace zyltest
