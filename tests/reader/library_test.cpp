// Library import: which member each library holds and where it goes, the generic library
// element and its types, unsupported and unknown libraries, and failing members.

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "tests/reader/reader_file_test.h"

namespace {

using namespace zylsdk;

class LibraryTest : public zyltest::ReaderTest {
 protected:
  bool Import(const std::string& library) { return reader->ImportLibrary(*scene, Parse(library)); }
  const KZylReaderCollada::DocumentState& State() const { return reader->GetState(); }

  // The ids of a registry, in order.
  template <class T>
  static std::vector<std::string> IdsOf(const IdList<T>& list) {
    std::vector<std::string> ids;
    for (int i = 0; i < list.GetCount(); ++i) ids.push_back(list.GetId(i).Std());
    return ids;
  }
};

using Ids = std::vector<std::string>;

const char* const kTriangleGeometry =
    "<mesh><source id=\"%-p\"><float_array id=\"%-a\" count=\"9\">0 0 0 1 0 0 0 1 0</float_array>"
    "<technique_common><accessor source=\"#%-a\" count=\"3\" stride=\"3\"><param name=\"X\" type=\"float\"/>"
    "<param name=\"Y\" type=\"float\"/><param name=\"Z\" type=\"float\"/></accessor></technique_common></source>"
    "<vertices id=\"%-v\"><input semantic=\"POSITION\" source=\"#%-p\"/></vertices>"
    "<triangles count=\"1\"><input semantic=\"VERTEX\" source=\"#%-v\" offset=\"0\"/><p>0 1 2</p></triangles>"
    "</mesh>";

// A `geometry` element with a one-triangle mesh, its ids made from `id`.
std::string Geometry(const std::string& id) {
  std::string mesh = kTriangleGeometry;
  for (size_t at = mesh.find('%'); at != std::string::npos; at = mesh.find('%', at)) mesh.replace(at, 1, id);
  return "<geometry id=\"" + id + "\" name=\"" + id + "\">" + mesh + "</geometry>";
}

TEST_F(LibraryTest, AnimationsAreListedNotImported) {
  ASSERT_TRUE(Import("<library_animations><asset/><animation id=\"a\"><channel source=\"#s\" target=\"x/y\"/>"
                     "</animation>text<extra/><animation id=\"b\"/></library_animations>"));
  EXPECT_EQ(IdsOf(State().animations), (Ids{"a", "b"}));
  EXPECT_STREQ(DAE_GetName(State().animations.Get(0)), "animation");
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(scene->GetRootNode()->GetChildCount(), 0);
  EXPECT_TRUE(reader->GetStatus());
}

TEST_F(LibraryTest, TheGenericAnimationLibraryListsItsAnimationsToo) {
  ASSERT_TRUE(Import("<library type=\"ANIMATION\"><animation id=\"a\"/><animation id=\"b\"/></library>"));
  EXPECT_EQ(IdsOf(State().animations), (Ids{"a", "b"}));
}

TEST_F(LibraryTest, VisualScenesAreBuiltAndListedInOrder) {
  ASSERT_TRUE(Import("<library_visual_scenes><visual_scene id=\"vs1\"/><extra/><visual_scene id=\"vs2\"/>"
                     "</library_visual_scenes>"));
  EXPECT_EQ(IdsOf(State().visualScenes), (Ids{"vs1", "vs2"}));
  ASSERT_NE(State().visualScenes.Get(0), nullptr);
  EXPECT_NE(State().visualScenes.Get(0), State().visualScenes.Get(1));
  EXPECT_NE(State().visualScenes.Get(0), scene);
}

TEST_F(LibraryTest, TheFirstFailingMemberEndsTheLibrary) {
  EXPECT_FALSE(Import("<library_visual_scenes><visual_scene id=\"vs1\"/><visual_scene id=\"vs2\"><bad/>"
                      "</visual_scene><visual_scene id=\"vs3\"/></library_visual_scenes>"));
  EXPECT_FALSE(reader->GetStatus());
  EXPECT_EQ(IdsOf(State().visualScenes), Ids{"vs1"});
  EXPECT_EQ(Messages(), std::vector<std::string>{"ERROR: structure bad unknown"});
}

TEST_F(LibraryTest, AnEmptyLibraryReadsNothingAndSucceeds) {
  for (const char* library : {"<library_geometries/>", "<library_controllers/>", "<library_cameras/>",
                              "<library_lights/>", "<library_images/>", "<library_effects/>",
                              "<library_materials/>", "<library_visual_scenes/>", "<library type=\"LIGHT\"/>"}) {
    EXPECT_TRUE(Import(library)) << library;
    EXPECT_TRUE(reader->GetStatus()) << library;
  }
  EXPECT_TRUE(Messages().empty());
}

TEST_F(LibraryTest, GeometriesAreImportedAndOtherChildrenIgnored) {
  ASSERT_TRUE(Import("<library_geometries><extra/>" + Geometry("g1") + "<asset/>" + Geometry("g2") +
                     "</library_geometries>"));
  EXPECT_EQ(IdsOf(State().nodeAttributes), (Ids{"g1", "g2"}));
  ASSERT_NE(State().nodeAttributes.Get(0), nullptr);
  EXPECT_EQ(State().nodeAttributes.Get(0)->GetAttributeType(), KZylNodeAttribute::eMesh);
}

TEST_F(LibraryTest, TheGenericGeometryLibraryIsImportedLikeLibraryGeometries) {
  ASSERT_TRUE(Import("<library type=\"GEOMETRY\"><extra/>" + Geometry("g1") + Geometry("g2") + "</library>"));
  EXPECT_EQ(IdsOf(State().nodeAttributes), (Ids{"g1", "g2"}));
  // Only the type counts: another kind of member in it is passed over.
  KZylReaderCollada other(manager);
  ASSERT_TRUE(other.ImportLibrary(*scene, Parse("<library type=\"GEOMETRY\"><camera id=\"c\"/></library>")));
  EXPECT_EQ(other.GetState().nodeAttributes.GetCount(), 0);
}

TEST_F(LibraryTest, TheNameWinsOverTheType) {
  // The rows are tested in order: a library_geometries element with another type is still a
  // geometry library.
  ASSERT_TRUE(Import("<library_geometries type=\"ANIMATION\"><animation id=\"a\"/>" + Geometry("g") +
                     "</library_geometries>"));
  EXPECT_EQ(IdsOf(State().nodeAttributes), Ids{"g"});
  EXPECT_EQ(State().animations.GetCount(), 0);
}

TEST_F(LibraryTest, PhysicsLibrariesWarnOnce) {
  EXPECT_TRUE(Import("<library type=\"PHYSICS\"><geometry id=\"g\"/></library>"));
  EXPECT_TRUE(Import("<library type=\"PHYSICS\"/>"));
  EXPECT_TRUE(Import("<library type=\"PHYSICS\"/>"));
  EXPECT_EQ(Messages(), std::vector<std::string>{"Warning: library type not supported: PHYSICS"});
  EXPECT_EQ(State().nodeAttributes.GetCount(), 0);
}

TEST_F(LibraryTest, UnsupportedLibrariesWarnOnceEachAndSucceed) {
  for (int pass = 0; pass < 2; ++pass) {
    for (const char* name : {"library_animation_clips", "library_force_fields", "library_nodes",
                             "library_physics_materials", "library_physics_models", "library_physics_scenes"}) {
      EXPECT_TRUE(Import(std::string("<") + name + "/>")) << name;
    }
  }
  EXPECT_EQ(Messages(), (std::vector<std::string>{"Warning: library type not supported: library_animation_clips",
                                                  "Warning: library type not supported: library_force_fields",
                                                  "Warning: library type not supported: library_nodes",
                                                  "Warning: library type not supported: library_physics_materials",
                                                  "Warning: library type not supported: library_physics_models",
                                                  "Warning: library type not supported: library_physics_scenes"}));
}

TEST_F(LibraryTest, TheSecondPhysicsScenesLibraryGivesNoSecondWarning) {
  zyldae::ReadResult read = zyltest::ReadText(zyltest::Collada(
      "<library_physics_scenes><physics_scene id=\"p\"/></library_physics_scenes><library_physics_scenes/>"));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(zyltest::Messages(read), std::vector<std::string>{"Warning: library type not supported: "
                                                              "library_physics_scenes"});
}

TEST_F(LibraryTest, UnknownLibrariesFail) {
  EXPECT_FALSE(Import("<library_foo><geometry id=\"g\"/></library_foo>"));
  EXPECT_FALSE(reader->ImportLibrary(*scene, Parse("<library type=\"geometry\"/>")));
  EXPECT_FALSE(Import("<library type=\"EFFECT\"/>"));
  EXPECT_FALSE(Import("<library/>"));
  EXPECT_EQ(Messages(), (std::vector<std::string>{"ERROR: Unrecognized library element: library_foo",
                                                  "ERROR: Unrecognized library element: library",
                                                  "ERROR: Unrecognized library element: library",
                                                  "ERROR: Unrecognized library element: library"}));
  EXPECT_EQ(State().nodeAttributes.GetCount(), 0);
}

TEST_F(LibraryTest, AGenericPhysicsLibraryDoesNotStopTheRead) {
  zyldae::ReadResult read = zyltest::ReadText(zyltest::Collada(
      "<library type=\"PHYSICS\"/><library_animations><animation id=\"a\"/></library_animations>"));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(zyltest::CountMessage(read, "Warning: library type not supported: PHYSICS"), 1);
}

TEST_F(LibraryTest, AFailedEffectIsSkippedAndTheLibraryGoesOn) {
  ASSERT_TRUE(Import("<library_effects><effect id=\"bad\"/><effect id=\"good\"><profile_COMMON><technique sid=\"t\">"
                     "<phong/></technique></profile_COMMON></effect></library_effects>"));
  EXPECT_TRUE(reader->GetStatus());
  EXPECT_EQ(Messages(), std::vector<std::string>{"ERROR: no common profile found for library bad"});
  EXPECT_EQ(IdsOf(State().effects), Ids{"good"});
}

TEST_F(LibraryTest, AFailedMaterialOrImageIsSkippedAndTheLibraryGoesOn) {
  ASSERT_TRUE(Import("<library_images><image id=\"none\"/><image id=\"wood\"><init_from>./wood.tga</init_from>"
                     "</image></library_images>"));
  ASSERT_TRUE(Import("<library_effects><effect id=\"e\"><profile_COMMON><technique sid=\"t\"><lambert/>"
                     "</technique></profile_COMMON></effect></library_effects>"));
  ASSERT_TRUE(Import("<library_materials><material id=\"lost\"><instance_effect url=\"#nowhere\"/></material>"
                     "<material id=\"m\"><instance_effect url=\"#e\"/></material></library_materials>"));
  EXPECT_EQ(IdsOf(State().images), Ids{"wood"});
  EXPECT_EQ(IdsOf(State().materials), Ids{"m"});
  EXPECT_EQ(Messages(), (std::vector<std::string>{"ERROR: Image none has no input file.",
                                                  "ERROR: Effect not found: #nowhere"}));
}

TEST_F(LibraryTest, CamerasAndLightsGoToTheNodeAttributes) {
  ASSERT_TRUE(Import("<library_cameras><camera id=\"cam\"><optics><technique_common><perspective>"
                     "<yfov>45</yfov></perspective></technique_common></optics></camera></library_cameras>"));
  ASSERT_TRUE(Import("<library type=\"LIGHT\"><light id=\"sun\"><technique_common><directional>"
                     "<color>1 1 1</color></directional></technique_common></light></library>"));
  EXPECT_EQ(IdsOf(State().nodeAttributes), (Ids{"cam", "sun"}));
  ASSERT_NE(State().nodeAttributes.Get(0), nullptr);
  EXPECT_EQ(State().nodeAttributes.Get(0)->GetAttributeType(), KZylNodeAttribute::eCamera);
  ASSERT_NE(State().nodeAttributes.Get(1), nullptr);
  EXPECT_EQ(State().nodeAttributes.Get(1)->GetAttributeType(), KZylNodeAttribute::eLight);
}

TEST_F(LibraryTest, ControllersGoToTheirRegistry) {
  ASSERT_TRUE(Import("<library_geometries>" + Geometry("g") + "</library_geometries>"));
  ASSERT_TRUE(Import(
      "<library type=\"CONTROLLER\"><controller id=\"skin\"><skin source=\"#g\"><bind_shape_matrix>"
      "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</bind_shape_matrix>"
      "<source id=\"j\"><Name_array count=\"1\">joint</Name_array><technique_common><accessor count=\"1\">"
      "<param name=\"JOINT\" type=\"name\"/></accessor></technique_common></source>"
      "<source id=\"w\"><float_array count=\"1\">1</float_array><technique_common><accessor count=\"1\">"
      "<param name=\"WEIGHT\" type=\"float\"/></accessor></technique_common></source>"
      "<source id=\"m\"><float_array count=\"16\">1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</float_array>"
      "<technique_common><accessor count=\"1\" stride=\"16\"><param name=\"TRANSFORM\" type=\"float4x4\"/>"
      "</accessor></technique_common></source>"
      "<joints><input semantic=\"JOINT\" source=\"#j\"/><input semantic=\"INV_BIND_MATRIX\" source=\"#m\"/></joints>"
      "<vertex_weights count=\"3\"><input semantic=\"JOINT\" source=\"#j\" offset=\"0\"/>"
      "<input semantic=\"WEIGHT\" source=\"#w\" offset=\"1\"/><vcount>1 1 1</vcount><v>0 0 0 0 0 0</v>"
      "</vertex_weights></skin></controller></library>"));
  EXPECT_EQ(IdsOf(State().controllers), Ids{"skin"});
}

}  // namespace
