// The reader object and its read entry: file operations and their error ids, read options,
// Read's failures and what a successful read leaves (take, renaming), repeated reads, and the
// materials the reader disposes of.

#include <dirent.h>
#include <unistd.h>

#include <climits>
#include <fstream>
#include <set>
#include <string>

#include "reader/collada_import.h"
#include "tests/reader/reader_file_test.h"

namespace {

using namespace zylsdk;
using zyltest::Collada;
using zyltest::ColladaWithAsset;
using zyltest::ParseFailure;

class ReadEntryTest : public zyltest::ReaderFileTest {};

const std::string kAssetOnly = Collada("");

TEST_F(ReadEntryTest, RegisteredWithTheManagerForDaeFiles) {
  KZylSdkManager applicationManager;
  EXPECT_EQ(applicationManager.CreateReader("box.dae"), nullptr);
  RegisterColladaReader(applicationManager);
  std::unique_ptr<KZylReader> created = applicationManager.CreateReader("models/Box.DAE");
  ASSERT_NE(created, nullptr);
  EXPECT_NE(dynamic_cast<KZylReaderCollada*>(created.get()), nullptr);
  EXPECT_NE(applicationManager.CreateReader("dae"), nullptr);
  EXPECT_EQ(applicationManager.CreateReader("box.obj"), nullptr);
  int major = 0, minor = 0, revision = -1;
  created->GetVersion(major, minor, revision);
  EXPECT_GT(major + minor + revision, 0);
}

TEST_F(ReadEntryTest, FileOpenKeepsThePathThatReadParses) {
  EXPECT_FALSE(reader->IsFileOpen());
  ASSERT_TRUE(Open(kAssetOnly));
  EXPECT_TRUE(reader->IsFileOpen());
  EXPECT_TRUE(reader->Read(*scene, Options()));
  EXPECT_TRUE(reader->FileClose());
  EXPECT_FALSE(reader->IsFileOpen());
  EXPECT_EQ(reader->GetLastErrorID(), 0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(ReadEntryTest, FileOpenOfAMissingFileFailsWithErrorThree) {
  EXPECT_FALSE(reader->FileOpen("/nonexistent/folder/box.dae"));
  EXPECT_EQ(reader->GetLastErrorID(), 3);
  EXPECT_FALSE(reader->GetLastErrorString().IsEmpty());
  EXPECT_FALSE(reader->IsFileOpen());
  EXPECT_FALSE(reader->FileOpen(nullptr));
  EXPECT_EQ(reader->GetLastErrorID(), 3);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(ReadEntryTest, FileOpenWhileAFileIsOpenClosesItFirst) {
  // Another file replaces the open one.
  ASSERT_TRUE(Open(ColladaWithAsset("<up_axis>Z_UP</up_axis>")));
  ASSERT_TRUE(Open(ColladaWithAsset("<up_axis>X_UP</up_axis>")));
  ASSERT_TRUE(reader->Read(*scene, Options()));
  EXPECT_EQ(scene->GetGlobalSettings().GetAxisSystem().GetUpVector(), 1);

  // A failed open after a successful one leaves no file and no path: the read then fails.
  ASSERT_TRUE(Open(kAssetOnly));
  EXPECT_FALSE(reader->FileOpen("/nonexistent/box.dae"));
  EXPECT_FALSE(reader->IsFileOpen());
  manager.GetUserNotification()->ClearDetails();
  EXPECT_FALSE(reader->Read(*KZylScene::Create(&manager, ""), Options()));
  EXPECT_EQ(Messages(), std::vector<std::string>{ParseFailure()});
}

TEST_F(ReadEntryTest, FileCloseWithoutAFileFailsWithErrorThree) {
  EXPECT_FALSE(reader->FileClose());
  EXPECT_EQ(reader->GetLastErrorID(), 3);
  ASSERT_TRUE(Open(kAssetOnly));
  reader->GetError().Clear();
  EXPECT_TRUE(reader->FileClose());
  EXPECT_EQ(reader->GetLastErrorID(), 0);
  EXPECT_FALSE(reader->FileClose());
  EXPECT_EQ(reader->GetLastErrorID(), 3);
}

TEST_F(ReadEntryTest, GetReadOptionsWithoutAFileIsNullWithErrorThree) {
  EXPECT_EQ(reader->GetReadOptions(true), nullptr);
  EXPECT_EQ(reader->GetLastErrorID(), 3);
}

TEST_F(ReadEntryTest, ReadWithoutOptionsFailsWithErrorSix) {
  ASSERT_TRUE(Open(kAssetOnly));
  EXPECT_FALSE(reader->Read(*scene, nullptr));
  EXPECT_EQ(reader->GetLastErrorID(), 6);
  EXPECT_FALSE(reader->GetLastErrorString().IsEmpty());
  EXPECT_TRUE(Messages().empty());             // nothing parsed, nothing said
  EXPECT_TRUE(reader->GetErrorText().IsEmpty());
  EXPECT_EQ(scene->GetTakeCount(), 0);
}

TEST_F(ReadEntryTest, ReadBeforeFileOpenFailsWithTheParseMessage) {
  EXPECT_FALSE(reader->Read(*scene, Options()));
  EXPECT_EQ(reader->GetLastErrorID(), 0);  // not "file not opened"
  EXPECT_EQ(reader->GetLastErrorString(), "Unable to parse xml/dae file\n");
  EXPECT_EQ(reader->GetErrorText(), "Unable to parse xml/dae file\n");
  EXPECT_EQ(Messages(), std::vector<std::string>{ParseFailure()});
  EXPECT_EQ(manager.GetUserNotification()->GetDetail(0).code, 6);
  EXPECT_EQ(scene->GetTakeCount(), 0);
}

TEST_F(ReadEntryTest, EachFailedReadAppendsToTheErrorText) {
  ASSERT_TRUE(Open("not xml"));
  EXPECT_FALSE(reader->Read(*scene, Options()));
  EXPECT_FALSE(reader->Read(*scene, Options()));
  EXPECT_EQ(reader->GetErrorText(), "Unable to parse xml/dae file\nUnable to parse xml/dae file\n");
  EXPECT_EQ(CountMessage(ParseFailure()), 2);
}

TEST_F(ReadEntryTest, ReadTwiceParsesTheFileAgain) {
  const std::string& path = Write(ColladaWithAsset("<up_axis>Z_UP</up_axis>"));
  ASSERT_TRUE(reader->FileOpen(path.c_str()));
  ASSERT_TRUE(reader->Read(*scene, Options()));
  EXPECT_EQ(scene->GetGlobalSettings().GetAxisSystem().GetUpVector(), 3);
  // The file changes between the reads; the second read sees the change.
  std::ofstream(path, std::ios::binary | std::ios::trunc) << ColladaWithAsset("<up_axis>X_UP</up_axis>");
  KZylScene* second = KZylScene::Create(&manager, "");
  ASSERT_TRUE(reader->Read(*second, Options()));
  EXPECT_EQ(second->GetGlobalSettings().GetAxisSystem().GetUpVector(), 1);
  // Once the file is not XML any more, the read fails.
  std::ofstream(path, std::ios::binary | std::ios::trunc) << "<COLLADA";
  EXPECT_FALSE(reader->Read(*KZylScene::Create(&manager, ""), Options()));
}

TEST_F(ReadEntryTest, ReadAfterAFailedWalkWorks) {
  ASSERT_TRUE(Open("<collada version=\"1.4.1\"><asset/></collada>"));
  EXPECT_FALSE(reader->Read(*scene, Options()));
  ASSERT_TRUE(Open(kAssetOnly));
  EXPECT_TRUE(reader->Read(*KZylScene::Create(&manager, ""), Options()));
}

TEST_F(ReadEntryTest, GetReadOptionsAfterAReadReportsZeroStartAndFrameCount) {
  // An animated document: a translated node and a curve over one to two seconds.
  std::string animated = Collada(
      "<library_animations><animation id=\"move\">"
      "<source id=\"in\"><float_array id=\"in-a\" count=\"2\">1 2</float_array><technique_common>"
      "<accessor source=\"#in-a\" count=\"2\"><param name=\"TIME\" type=\"float\"/></accessor>"
      "</technique_common></source>"
      "<source id=\"out\"><float_array id=\"out-a\" count=\"2\">0 5</float_array><technique_common>"
      "<accessor source=\"#out-a\" count=\"2\"><param name=\"X\" type=\"float\"/></accessor>"
      "</technique_common></source>"
      "<sampler id=\"s\"><input semantic=\"INPUT\" source=\"#in\"/><input semantic=\"OUTPUT\" source=\"#out\"/>"
      "</sampler><channel source=\"#s\" target=\"box/translate.X\"/></animation></library_animations>"
      "<library_visual_scenes><visual_scene id=\"vs\"><node id=\"box\" name=\"box\">"
      "<translate sid=\"translate\">0 0 0</translate></node></visual_scene></library_visual_scenes>"
      "<scene><instance_visual_scene url=\"#vs\"/></scene>");
  ASSERT_TRUE(Open(animated));
  KZylStreamOptions* before = reader->GetReadOptions(true);
  ASSERT_NE(before, nullptr);
  reader->Read(*scene, before);
  auto* options = static_cast<KZylStreamOptionsColladaReader*>(reader->GetReadOptions(false));
  ASSERT_NE(options, nullptr);
  ASSERT_TRUE(options->Is(KZylStreamOptionsColladaReader::ClassId));
  EXPECT_NE(options, before);  // a new object each time, owned by the manager
  EXPECT_EQ(options->GetOption("START").GetTime(), KTime(0));
  EXPECT_EQ(options->GetOption("FRAME COUNT").GetInt(), 0);
  EXPECT_EQ(options->GetTimeMode(), 0);
  EXPECT_EQ(options->GetCustomFrameRate(), 0.0);
  EXPECT_EQ(reader->GetAnimationStart(), KTime(0));
  EXPECT_EQ(reader->GetAnimationStop(), KTime(0));
}

// The descriptors of the process that are open on `path`.
std::set<int> DescriptorsOn(const std::string& path) {
  std::set<int> found;
  DIR* folder = opendir("/proc/self/fd");
  if (!folder) return found;
  while (dirent* entry = readdir(folder)) {
    char target[PATH_MAX];
    std::string link = std::string("/proc/self/fd/") + entry->d_name;
    ssize_t length = readlink(link.c_str(), target, sizeof target - 1);
    if (length <= 0) continue;
    target[length] = '\0';
    if (path == target) found.insert(std::atoi(entry->d_name));
  }
  closedir(folder);
  return found;
}

TEST_F(ReadEntryTest, FileCloseWhoseFcloseFailsStillClearsAndReturnsFalse) {
  const std::string& path = Write(kAssetOnly);
  char resolved[PATH_MAX];
  ASSERT_NE(realpath(path.c_str(), resolved), nullptr);
  std::set<int> before = DescriptorsOn(resolved);
  ASSERT_TRUE(reader->FileOpen(path.c_str()));
  std::set<int> after = DescriptorsOn(resolved);
  std::set<int> opened;
  for (int fd : after)
    if (!before.count(fd)) opened.insert(fd);
  if (opened.size() != 1) GTEST_SKIP() << "cannot find the reader's descriptor in /proc/self/fd";
  // Closed underneath the reader: its fclose now fails.
  ASSERT_EQ(close(*opened.begin()), 0);

  EXPECT_FALSE(reader->FileClose());
  EXPECT_FALSE(reader->IsFileOpen());
  // The path is gone too: a read now parses "" and fails, where the kept path would succeed.
  EXPECT_FALSE(reader->Read(*scene, Options()));
  EXPECT_EQ(CountMessage(ParseFailure()), 1);
  EXPECT_FALSE(reader->FileClose());
  EXPECT_EQ(reader->GetLastErrorID(), 3);
}

TEST_F(ReadEntryTest, ASuccessfulReadSetsTakeOne) {
  ASSERT_TRUE(OpenAndRead(kAssetOnly));
  ASSERT_EQ(scene->GetTakeCount(), 1);
  const KZylTakeInfo* take = scene->GetTakeInfo("Take 001");
  ASSERT_NE(take, nullptr);
  EXPECT_EQ(take->mLocalTimeSpan.GetStart(), KTime(0));
  EXPECT_EQ(take->mLocalTimeSpan.GetStop(), KTime(0));
  EXPECT_EQ(take->mReferenceTimeSpan.GetStart(), KTime(0));
  EXPECT_EQ(take->mReferenceTimeSpan.GetStop(), KTime(0));
  EXPECT_EQ(scene->GetCurrentTakeName(), "Take 001");
}

TEST_F(ReadEntryTest, AFailedReadSetsNoTake) {
  EXPECT_FALSE(OpenAndRead("<COLLADA version=\"1.4.1\"><library_nodes/></COLLADA>"));
  EXPECT_EQ(scene->GetTakeCount(), 0);
  EXPECT_EQ(scene->GetCurrentTakeName(), "");
}

TEST_F(ReadEntryTest, ASuccessfulReadRenamesDuplicateNodeNames) {
  KZylNode* root = scene->GetRootNode();
  for (const char* name : {"a", "b", "a"}) root->AddChild(KZylNode::Create(&manager, name));
  ASSERT_TRUE(OpenAndRead(kAssetOnly));
  EXPECT_EQ(root->GetChild(0)->GetName(), "a");
  EXPECT_EQ(root->GetChild(1)->GetName(), "b");
  EXPECT_EQ(root->GetChild(2)->GetName(), "a1");
}

TEST_F(ReadEntryTest, KeyedWarningsAreGivenOncePerReaderAcrossReads) {
  std::string document = Collada("<library_nodes/><library_nodes/><unknown_element/>");
  ASSERT_TRUE(OpenAndRead(document));
  ASSERT_TRUE(OpenAndRead(document, KZylScene::Create(&manager, "")));
  EXPECT_EQ(CountMessage("Warning: library type not supported: library_nodes"), 1);
  // Warnings that are not keyed come with every read.
  EXPECT_EQ(CountMessage("Warning: unknown structure in the main structure: <unknown_element>"), 2);
  // Another reader warns again.
  KZylReaderCollada other(manager);
  ASSERT_TRUE(other.FileOpen(Write(document).c_str()));
  ASSERT_TRUE(other.Read(*KZylScene::Create(&manager, ""), Options()));
  EXPECT_EQ(CountMessage("Warning: library type not supported: library_nodes"), 2);
}

TEST_F(ReadEntryTest, EveryReadStartsWithAnEmptyState) {
  ASSERT_TRUE(OpenAndRead(Collada(
      "<library_animations><animation id=\"a1\"/><animation id=\"a2\"/></library_animations>"
      "<library_visual_scenes><visual_scene id=\"vs\"/></library_visual_scenes>")));
  EXPECT_EQ(reader->GetState().animations.GetCount(), 2);
  EXPECT_EQ(reader->GetState().visualScenes.GetCount(), 1);
  ASSERT_TRUE(OpenAndRead(kAssetOnly, KZylScene::Create(&manager, "")));
  EXPECT_EQ(reader->GetState().animations.GetCount(), 0);
  EXPECT_EQ(reader->GetState().visualScenes.GetCount(), 0);
  EXPECT_TRUE(reader->GetStatus());
}

TEST_F(ReadEntryTest, ImportLinkDoesNothing) {
  KZylNode* node = KZylNode::Create(&manager, "n");
  EXPECT_TRUE(reader->ImportLink(*node));
  EXPECT_EQ(node->GetSrcObjectCount(), 0);
}

TEST_F(ReadEntryTest, TheReaderDestroysOnlyUnusedPlaceholderMaterials) {
  // Used by a mesh of a node: kept. Used by a mesh without node, or by nothing: destroyed.
  // Destroyed already by the application: left alone.
  auto placeholder = [&](const char* name) { return KZylSurfaceLambert::Create(&manager, name); };
  KZylSurfaceMaterial* used = placeholder("used");
  KZylSurfaceMaterial* orphanMesh = placeholder("orphanMesh");
  KZylSurfaceMaterial* unused = placeholder("unused");
  KZylSurfaceMaterial* gone = placeholder("gone");
  auto meshUsing = [&](KZylSurfaceMaterial* material) {
    KZylMesh* mesh = KZylMesh::Create(&manager, "");
    KZylLayerElementMaterial* element = manager.CreateKZylLayerElementMaterial("");
    element->GetDirectArray().Add(material);
    mesh->GetLayer(mesh->CreateLayer())->SetMaterials(element);
    return mesh;
  };
  KZylNode* node = KZylNode::Create(&manager, "node");
  node->SetNodeAttribute(meshUsing(used));
  meshUsing(orphanMesh);
  for (KZylSurfaceMaterial* material : {used, orphanMesh, unused, gone}) reader->AddToMaterialSet(material);
  reader->AddToMaterialSet(used);  // a second time: still once in the set
  reader->AddToMaterialSet(nullptr);
  EXPECT_EQ(reader->GetMaterialSet().GetCount(), 4);
  uint64_t ids[3] = {used->GetUniqueID(), orphanMesh->GetUniqueID(), unused->GetUniqueID()};
  gone->Destroy();
  // An object made after the destruction may reuse the address; it is not destroyed either.
  KZylSurfaceLambert* newcomer = placeholder("newcomer");
  uint64_t newcomerId = newcomer->GetUniqueID();

  reader.reset();
  EXPECT_TRUE(manager.Holds(used, ids[0]));
  EXPECT_FALSE(manager.Holds(orphanMesh, ids[1]));
  EXPECT_FALSE(manager.Holds(unused, ids[2]));
  EXPECT_TRUE(manager.Holds(newcomer, newcomerId));
}

TEST_F(ReadEntryTest, TheDocumentsOwnMaterialsNeverEnterTheMaterialSet) {
  ASSERT_TRUE(OpenAndRead(Collada(
      "<library_effects><effect id=\"e\"><profile_COMMON><technique sid=\"t\"><lambert/></technique>"
      "</profile_COMMON></effect></library_effects>"
      "<library_materials><material id=\"m\"><instance_effect url=\"#e\"/></material></library_materials>")));
  ASSERT_EQ(reader->GetState().materials.GetCount(), 1);
  KZylSurfaceMaterial* material = reader->GetState().materials.Get(0);
  ASSERT_NE(material, nullptr);
  uint64_t id = material->GetUniqueID();
  reader->AddToMaterialSet(material);
  EXPECT_EQ(reader->GetMaterialSet().GetCount(), 0);
  reader.reset();
  EXPECT_TRUE(manager.Holds(material, id));
}

}  // namespace
