// The walk over a document's top level: the root, the version check, the asset first, the
// order of the libraries, the scene last, and the materials of meshes put into the scene.

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "tests/reader/reader_file_test.h"

namespace {

using namespace zylsdk;
using zyltest::Collada;
using zyltest::CountMessage;
using zyltest::Messages;
using zyltest::ParseFailure;
using zyltest::ReadText;

using Notifications = std::vector<std::string>;

std::string OldFormatWarning(const std::string& version) {
  return "Warning: Old Collada format (" + version +
         "). This format is weakly supported and could cause read errors. There is strong support for Collada "
         "format 1.4.*.";
}

std::string NewerFormatWarning(const std::string& version) {
  return "Warning: Collada format " + version + " newer than supported format 1.4.*. Might be weakly supported.";
}

std::string Root(const std::string& attributes, const std::string& body) {
  return "<?xml version=\"1.0\"?>\n<COLLADA " + attributes + ">" + body + "</COLLADA>\n";
}

TEST(DocumentWalk, ARootNamedInLowerCaseFailsWithoutAMessageOfItsOwn) {
  zyldae::ReadResult read = ReadText("<collada version=\"1.4.1\"><asset/></collada>");
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read), Notifications{ParseFailure()});
  EXPECT_EQ(read.lastErrorId, 0);
  EXPECT_EQ(read.lastErrorText, "Unable to parse xml/dae file\n");
}

TEST(DocumentWalk, AMissingVersionIsABadVersionSyntax) {
  zyldae::ReadResult read = ReadText(Root("", "<asset/>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read), (Notifications{"ERROR: Bad syntax for version number ()", ParseFailure()}));
}

TEST(DocumentWalk, AVersionWithoutDotIsABadVersionSyntax) {
  zyldae::ReadResult read = ReadText(Collada("", "14"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read), (Notifications{"ERROR: Bad syntax for version number (14)", ParseFailure()}));
}

TEST(DocumentWalk, VersionOnePointFourPassesSilently) {
  for (const char* version : {"1.4", "1.4.0", "1.4.1", "1.4.9.9"}) {
    zyldae::ReadResult read = ReadText(Collada("", version));
    EXPECT_TRUE(read.ok) << version;
    EXPECT_TRUE(Messages(read).empty()) << version;
  }
}

TEST(DocumentWalk, OlderVersionsWarnAndRead) {
  for (const char* version : {"1.3.0", "0.9", "1.3", "1.0.1", ".4", "1.", "x.y"}) {
    zyldae::ReadResult read = ReadText(Collada("", version));
    EXPECT_TRUE(read.ok) << version;
    EXPECT_EQ(Messages(read), Notifications{OldFormatWarning(version)}) << version;
  }
}

TEST(DocumentWalk, NewerVersionsWarnAndRead) {
  for (const char* version : {"2.0", "1.5.0", "1.10", "2.4.1"}) {
    zyldae::ReadResult read = ReadText(Collada("", version));
    EXPECT_TRUE(read.ok) << version;
    EXPECT_EQ(Messages(read), Notifications{NewerFormatWarning(version)}) << version;
  }
}

TEST(DocumentWalk, TheVersionIsKeptAsWritten) {
  KZylSdkManager manager;
  KZylReaderCollada reader(manager);
  zyltest::TempFile file(Collada("", "1.4.1"));
  ASSERT_TRUE(reader.FileOpen(file.Path().c_str()));
  ASSERT_TRUE(reader.Read(*KZylScene::Create(&manager, ""), KZylStreamOptionsColladaReader::Create(&manager, "")));
  EXPECT_EQ(reader.GetColladaVersion(), "1.4.1");
}

TEST(DocumentWalk, TheFirstElementMustBeTheAsset) {
  zyldae::ReadResult read = ReadText(Root("version=\"1.4.1\"", "<!-- comment -->text<library_geometries/><asset/>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read),
            (Notifications{"ERROR: <asset> node not found, at node: <library_geometries>", ParseFailure()}));
}

TEST(DocumentWalk, AnEmptyRootReadsIntoAnEmptyScene) {
  zyldae::ReadResult read = ReadText(Root("version=\"1.4.1\"", " <!-- nothing --> "));
  EXPECT_TRUE(read.ok);
  EXPECT_TRUE(Messages(read).empty());
  EXPECT_EQ(read.scene->GetRootNode()->GetChildCount(), 0);
  EXPECT_EQ(read.scene->GetSceneInfo(), nullptr);  // no asset, no scene info
  EXPECT_EQ(read.scene->GetCurrentTakeName(), "Take 001");
}

TEST(DocumentWalk, ADocumentWithOnlyAnAssetReadsIntoAnEmptyScene) {
  zyldae::ReadResult read = ReadText(Collada(""));
  EXPECT_TRUE(read.ok);
  EXPECT_TRUE(Messages(read).empty());
  EXPECT_EQ(read.scene->GetRootNode()->GetChildCount(), 0);
  EXPECT_NE(read.scene->GetSceneInfo(), nullptr);
  EXPECT_EQ(read.scene->GetMaterialCount(), 0);
  zyldae::Json dump = zyltest::DumpText(Collada(""));
  EXPECT_EQ(dump["ok"], true);
  EXPECT_TRUE(dump["scene"]["root"]["children"].empty());
  EXPECT_EQ(dump["scene"]["ambientColor"], zyldae::Json::parse("[0, 0, 0, 1]"));
}

TEST(DocumentWalk, TwoNodeLibrariesGiveOneWarning) {
  zyldae::ReadResult read = ReadText(Collada("<library_nodes/><library_nodes><node id=\"n\"/></library_nodes>"));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(Messages(read), Notifications{"Warning: library type not supported: library_nodes"});
}

TEST(DocumentWalk, EveryUnsupportedLibraryWarnsOnceUnderItsName) {
  const char* names[] = {"library_nodes",          "library_physics_materials", "library_physics_models",
                         "library_physics_scenes", "library_force_fields",      "library_animation_clips"};
  std::string body;
  for (int pass = 0; pass < 2; ++pass)
    for (const char* name : names) body += std::string("<") + name + "/>";
  zyldae::ReadResult read = ReadText(Collada(body));
  EXPECT_TRUE(read.ok);
  Notifications expected;
  for (const char* name : names) expected.push_back(std::string("Warning: library type not supported: ") + name);
  EXPECT_EQ(Messages(read), expected);
}

TEST(DocumentWalk, UnknownElementsWarnAndTheWalkGoesOn) {
  zyldae::ReadResult read = ReadText(Collada("<extra/><Library_nodes/><library_nodes/>"));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(Messages(read), (Notifications{"Warning: unknown structure in the main structure: <extra>",
                                           "Warning: unknown structure in the main structure: <Library_nodes>",
                                           "Warning: library type not supported: library_nodes"}));
}

TEST(DocumentWalk, ExtraStructureAfterTheSceneFailsTheRead) {
  zyldae::ReadResult read = ReadText(Collada("<scene/><extra/>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read),
            (Notifications{"ERROR: extra structure at the end of the main structure: <extra>", ParseFailure()}));
}

TEST(DocumentWalk, OnlyElementsCountAfterTheScene) {
  zyldae::ReadResult read = ReadText(Collada("<scene/> <!-- the end --> "));
  EXPECT_TRUE(read.ok);
  EXPECT_TRUE(Messages(read).empty());
}

TEST(DocumentWalk, EffectsWithoutMaterialsAreNotRead) {
  zyldae::ReadResult read = ReadText(Collada("<library_effects><effect id=\"e\"/></library_effects>"));
  EXPECT_TRUE(read.ok);
  // The effect has no common profile: had it been read, it would have said so.
  EXPECT_EQ(Messages(read), Notifications{"Warning: library_effects exists but there is no library_materials "
                                          "using it. This library will not be read."});
}

TEST(DocumentWalk, ImagesWithoutEffectsAreNotRead) {
  zyldae::ReadResult read = ReadText(Collada("<library_images><image id=\"i\"/></library_images>"));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(Messages(read), Notifications{"Warning: library_images exists but there is no library_effects "
                                          "using it. This library will not be read."});
}

TEST(DocumentWalk, MaterialsWithoutEffectsFailTheReadSilently) {
  zyldae::ReadResult read = ReadText(Collada("<library_materials/>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read), Notifications{ParseFailure()});
}

const char* const kLambertEffect =
    "<effect id=\"e1\"><profile_COMMON><technique sid=\"t\"><lambert/></technique></profile_COMMON></effect>";

TEST(DocumentWalk, EffectsAreReadBeforeTheMaterialsThatUseThem) {
  // The materials come first in the document; their effect is still found.
  zyldae::ReadResult read =
      ReadText(Collada("<library_materials><material id=\"m1\"><instance_effect url=\"#e1\"/></material>"
                       "</library_materials><library_effects>" +
                       std::string(kLambertEffect) + "</library_effects>"));
  EXPECT_TRUE(read.ok);
  EXPECT_TRUE(Messages(read).empty()) << Messages(read)[0];
}

TEST(DocumentWalk, ImagesEffectsAndMaterialsAreEachReadOnceWhereTheMaterialsAre) {
  KZylSdkManager manager;
  KZylReaderCollada reader(manager);
  // In reverse order in the document; the effect's texture finds its image, the material its
  // effect.
  zyltest::TempFile file(Collada(
      "<library_materials><material id=\"m1\"><instance_effect url=\"#e1\"/></material></library_materials>"
      "<library_effects><effect id=\"e1\"><profile_COMMON><technique sid=\"t\"><lambert><diffuse>"
      "<texture texture=\"img\" texcoord=\"uv\"><extra/></texture></diffuse></lambert></technique>"
      "</profile_COMMON></effect></library_effects>"
      "<library_images><image id=\"img\"><init_from>./wood.tga</init_from></image></library_images>"));
  ASSERT_TRUE(reader.FileOpen(file.Path().c_str()));
  ASSERT_TRUE(reader.Read(*KZylScene::Create(&manager, ""), KZylStreamOptionsColladaReader::Create(&manager, "")));
  EXPECT_EQ(manager.GetUserNotification()->GetDetailCount(), 0)
      << manager.GetUserNotification()->GetDetail(0).text.Std();
  const KZylReaderCollada::DocumentState& state = reader.GetState();
  EXPECT_EQ(state.images.GetCount(), 1);
  EXPECT_EQ(state.effects.GetCount(), 1);
  ASSERT_EQ(state.materials.GetCount(), 1);
  EXPECT_EQ(state.materials.GetId(0), "m1");
  ASSERT_NE(state.materials.Get(0), nullptr);
  EXPECT_EQ(state.materials.Get(0)->GetName(), "m1");
}

TEST(DocumentWalk, TwoMaterialLibrariesReadTheFirstImagesAndEffectsTwice) {
  KZylSdkManager manager;
  KZylReaderCollada reader(manager);
  zyltest::TempFile file(Collada("<library_effects>" + std::string(kLambertEffect) +
                                 "</library_effects><library_materials/><library_materials/>"));
  ASSERT_TRUE(reader.FileOpen(file.Path().c_str()));
  ASSERT_TRUE(reader.Read(*KZylScene::Create(&manager, ""), KZylStreamOptionsColladaReader::Create(&manager, "")));
  EXPECT_EQ(reader.GetState().effects.GetCount(), 2);
}

TEST(DocumentWalk, TheGenericLibraryIsDeprecatedButRead) {
  zyldae::ReadResult read = ReadText(
      Collada("<library type=\"ANIMATION\"/><library type=\"GEOMETRY\"/><library type=\"CAMERA\"/>"));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(Messages(read), Notifications{"Warning: structure library is deprecated in Collada 1.4."});
}

TEST(DocumentWalk, AGenericLibraryOfUnknownTypeFailsTheRead) {
  zyldae::ReadResult read = ReadText(Collada("<library type=\"EFFECT\"/>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read), (Notifications{"Warning: structure library is deprecated in Collada 1.4.",
                                           "ERROR: Unrecognized library element: library", ParseFailure()}));
}

TEST(DocumentWalk, AFailingLibraryEndsTheWalk) {
  // The visual scene fails; the libraries after it are not read.
  zyldae::ReadResult read = ReadText(Collada(
      "<library_visual_scenes><visual_scene id=\"vs\"><unknown/></visual_scene></library_visual_scenes>"
      "<library_nodes/>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(CountMessage(read, "Warning: library type not supported: library_nodes"), 0);
  EXPECT_EQ(Messages(read).back(), ParseFailure());
}

class DocumentWalkTest : public zyltest::ReaderTest {};

TEST_F(DocumentWalkTest, TheAmbientColourBecomesBlack) {
  scene->GetGlobalLightSettings().SetAmbientColor(KZylColor(0.5, 0.5, 0.5, 0.5));
  ASSERT_TRUE(reader->ReadCollada(*scene, Parse("<COLLADA version=\"1.4.1\"/>")));
  EXPECT_EQ(scene->GetGlobalLightSettings().GetAmbientColor(), KZylColor(0, 0, 0, 1));
  EXPECT_TRUE(reader->GetStatus());
}

TEST_F(DocumentWalkTest, ANullOrForeignRootFails) {
  EXPECT_FALSE(reader->ReadCollada(*scene, nullptr));
  EXPECT_FALSE(reader->ReadCollada(*scene, Parse("<COLLADAX version=\"1.4.1\"/>")));
  EXPECT_TRUE(Messages().empty());
}

TEST_F(DocumentWalkTest, TheAssetFillsASceneInfoGivenToTheScene) {
  ASSERT_TRUE(reader->ReadCollada(*scene, Parse("<COLLADA version=\"1.4.1\"><asset><title>T</title></asset></COLLADA>")));
  ASSERT_NE(scene->GetSceneInfo(), nullptr);
  EXPECT_EQ(scene->GetSceneInfo()->mTitle, "T");
}

TEST_F(DocumentWalkTest, AnimationsAreListedAndImportedAfterTheScene) {
  // The animation library comes first; its animations are only listed by the library walk.
  ASSERT_TRUE(reader->ReadCollada(
      *scene, Parse("<COLLADA version=\"1.4.1\"><asset/><library_animations><animation id=\"a1\"/><extra/>"
                    "<animation id=\"a2\"/><animation/></library_animations></COLLADA>")));
  const auto& animations = reader->GetState().animations;
  ASSERT_EQ(animations.GetCount(), 3);
  EXPECT_EQ(animations.GetId(0), "a1");
  EXPECT_EQ(animations.GetId(1), "a2");
  EXPECT_EQ(animations.GetId(2), "");
  EXPECT_EQ(DAE_GetProperty(animations.Get(1), "id"), "a2");
}

// A mesh on a node of the scene whose layer `layer` holds `materials`, referenced as `mode`.
KZylMesh* AddMeshNode(KZylSdkManager& manager, KZylScene& scene, const std::vector<KZylSurfaceMaterial*>& materials,
                      KZylLayerElement::EReferenceMode mode, int layers = 1) {
  KZylNode* node = KZylNode::Create(&manager, "node");
  KZylMesh* mesh = KZylMesh::Create(&manager, "mesh");
  node->SetNodeAttribute(mesh);
  scene.GetRootNode()->AddChild(node);
  for (int i = 0; i < layers; ++i) mesh->CreateLayer();
  KZylLayerElementMaterial* element = manager.CreateKZylLayerElementMaterial("");
  element->SetReferenceMode(mode);
  for (KZylSurfaceMaterial* material : materials) element->GetDirectArray().Add(material);
  mesh->GetLayer(layers - 1)->SetMaterials(element);
  return mesh;
}

TEST_F(DocumentWalkTest, MaterialsOfMeshesAreConnectedToTheirNodeAndTheScene) {
  KZylSurfaceMaterial* loose = KZylSurfaceLambert::Create(&manager, "loose");
  KZylSurfaceMaterial* elsewhere = KZylSurfaceLambert::Create(&manager, "elsewhere");
  KZylSurfaceMaterial* here = KZylSurfaceLambert::Create(&manager, "here");
  KZylScene* other = KZylScene::Create(&manager, "other");
  other->ConnectZylSrc(elsewhere);
  scene->ConnectZylSrc(here);
  KZylMesh* mesh = AddMeshNode(manager, *scene, {loose, nullptr, elsewhere, here, loose}, KZylLayerElement::eIndexToDirect, 2);
  KZylNode* node = mesh->GetNode();
  node->ConnectZylSrc(here);

  ASSERT_TRUE(reader->ReadCollada(*scene, Parse("<COLLADA version=\"1.4.1\"/>")));

  // The node: its former source first, then the others in array order, each once.
  ASSERT_EQ(node->GetSrcObjectCount(), 3);
  EXPECT_EQ(node->GetSrcObject(0), here);
  EXPECT_EQ(node->GetSrcObject(1), loose);
  EXPECT_EQ(node->GetSrcObject(2), elsewhere);
  EXPECT_EQ(loose->GetScene(), scene);
  EXPECT_EQ(elsewhere->GetScene(), scene);
  EXPECT_EQ(other->GetMaterialCount(), 0);
  EXPECT_EQ(scene->GetMaterialCount(), 3);
  EXPECT_EQ(here->GetDstObjectCount(KZylScene::ClassId), 1);  // not connected twice
}

TEST_F(DocumentWalkTest, MaterialsReferencedByIndexOnlyAreLeftAlone) {
  KZylSurfaceMaterial* material = KZylSurfaceLambert::Create(&manager, "m");
  KZylMesh* mesh = AddMeshNode(manager, *scene, {material}, KZylLayerElement::eIndex);
  ASSERT_TRUE(reader->ReadCollada(*scene, Parse("<COLLADA version=\"1.4.1\"/>")));
  EXPECT_EQ(mesh->GetNode()->GetSrcObjectCount(), 0);
  EXPECT_EQ(material->GetScene(), nullptr);
  // Direct reference mode does connect.
  KZylSurfaceMaterial* direct = KZylSurfaceLambert::Create(&manager, "d");
  AddMeshNode(manager, *scene, {direct}, KZylLayerElement::eDirect);
  ASSERT_TRUE(reader->ReadCollada(*scene, Parse("<COLLADA version=\"1.4.1\"/>")));
  EXPECT_EQ(direct->GetScene(), scene);
}

TEST_F(DocumentWalkTest, MeshesOutsideTheSceneAreNotLookedAt) {
  KZylSurfaceMaterial* material = KZylSurfaceLambert::Create(&manager, "m");
  KZylScene* other = KZylScene::Create(&manager, "other");
  AddMeshNode(manager, *other, {material}, KZylLayerElement::eDirect);
  ASSERT_TRUE(reader->ReadCollada(*scene, Parse("<COLLADA version=\"1.4.1\"/>")));
  EXPECT_EQ(material->GetScene(), nullptr);
  EXPECT_EQ(scene->GetMaterialCount(), 0);
}

}  // namespace
