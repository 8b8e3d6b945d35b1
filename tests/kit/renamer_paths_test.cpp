// The scene renamer's number-suffix strategy, and the file-name helpers.

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "kit/zylsdk.h"

namespace {

using namespace zylsdk;

class RenamerTest : public ::testing::Test {
 protected:
  KZylNode* Add(KZylNode* parent, const char* name) {
    KZylNode* node = KZylNode::Create(&manager, name);
    EXPECT_TRUE(parent->AddChild(node));
    return node;
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (KZylNode* node : scene->GetNodes()) names.push_back(node->GetName().Std());
    return names;
  }
  KZylSdkManager manager;
  KZylScene* scene = KZylScene::Create(&manager, "");
};

TEST_F(RenamerTest, LaterDuplicatesGetTheSmallestFreeNumber) {
  // Depth first: a, [a, a1], b, a, "", "".
  KZylNode* root = scene->GetRootNode();
  KZylNode* first = Add(root, "a");
  Add(first, "a");
  Add(first, "a1");
  Add(root, "b");
  Add(root, "a");
  Add(root, "");
  Add(root, "");
  KZylSceneRenamer(*scene).RenameFor(KZylSceneRenamer::eColladaToZyl);
  // The second "a" skips "a1", which another node has.
  EXPECT_EQ(Names(), (std::vector<std::string>{"a", "a2", "a1", "b", "a3", "", ""}));
}

TEST_F(RenamerTest, RenamedNamesStayUniqueAmongAllNodes) {
  KZylNode* root = scene->GetRootNode();
  Add(root, "a");
  Add(root, "a");
  Add(root, "a1");
  Add(root, "a1");
  Add(root, "a2");
  KZylSceneRenamer(*scene).RenameFor(16);
  EXPECT_EQ(Names(), (std::vector<std::string>{"a", "a3", "a1", "a11", "a2"}));
}

TEST_F(RenamerTest, OneRepeatAmongThousandsOfNamesIsFound) {
  KZylNode* root = scene->GetRootNode();
  for (int i = 0; i < 3000; ++i) Add(root, ("n" + std::to_string(i)).c_str());
  KZylSceneRenamer(*scene).RenameFor(KZylSceneRenamer::eColladaToZyl);
  EXPECT_EQ(Names()[2999], "n2999");
  // The last node repeats one from the middle.
  Add(root, "n1500");
  KZylSceneRenamer(*scene).RenameFor(KZylSceneRenamer::eColladaToZyl);
  const std::vector<std::string> names = Names();
  ASSERT_EQ(names.size(), 3001u);
  EXPECT_EQ(names[1500], "n1500");
  EXPECT_EQ(names[3000], "n15001");
}

TEST_F(RenamerTest, TheRootIsNotRenamedAndOtherModesDoNothing) {
  KZylNode* root = scene->GetRootNode();
  Add(root, "RootNode");
  Add(root, "x");
  Add(root, "x");
  KZylSceneRenamer(*scene).RenameFor(0);
  EXPECT_EQ(Names(), (std::vector<std::string>{"RootNode", "x", "x"}));
  KZylSceneRenamer(*scene).RenameFor(16);
  EXPECT_EQ(root->GetName(), "RootNode");
  EXPECT_EQ(Names(), (std::vector<std::string>{"RootNode", "x", "x1"}));
}

TEST_F(RenamerTest, AStrategyReusedForAnotherSceneStartsAfresh) {
  KNumberRenamingStrategy strategy;
  Add(scene->GetRootNode(), "n");
  Add(scene->GetRootNode(), "n");
  KZylSceneRenamer(*scene, strategy).RenameFor(16);
  EXPECT_EQ(Names(), (std::vector<std::string>{"n", "n1"}));
  KZylScene* other = KZylScene::Create(&manager, "");
  for (int i = 0; i < 2; ++i) other->GetRootNode()->AddChild(KZylNode::Create(&manager, "n"));
  KZylSceneRenamer(*other, strategy).RenameFor(16);
  EXPECT_EQ(other->GetRootNode()->GetChild(1)->GetName(), "n1");
}

TEST_F(RenamerTest, DuplicateNamesAreListedOnceInOrder) {
  KZylNode* root = scene->GetRootNode();
  Add(root, "b");
  Add(root, "a");
  Add(root, "b");
  Add(root, "a");
  Add(root, "b");
  Add(root, "c");
  class Reader : public KZylReader {
   public:
    using KZylReader::KZylReader;
    bool FileOpen(const char*) override { return false; }
    bool FileClose() override { return false; }
    bool IsFileOpen() override { return false; }
    KZylStreamOptions* GetReadOptions(bool) override { return nullptr; }
    bool Read(KZylScene&, KZylStreamOptions*) override { return false; }
  } reader(manager);
  KStringList duplicates;
  EXPECT_FALSE(reader.CheckDuplicateNodeNames(*scene, duplicates));
  ASSERT_EQ(duplicates.GetCount(), 2);
  EXPECT_EQ(duplicates.GetStringAt(0), "b");
  EXPECT_EQ(duplicates.GetStringAt(1), "a");
}

TEST(Paths, ExtractFileNameTakesThePartAfterTheLastSeparator) {
  EXPECT_EQ(ExtractFileName("maps/wood.tga", true), "wood.tga");
  EXPECT_EQ(ExtractFileName("C:\\maps\\wood.tga", true), "wood.tga");
  EXPECT_EQ(ExtractFileName("a\\b/c.png", true), "c.png");
  EXPECT_EQ(ExtractFileName("wood.tga", true), "wood.tga");
  EXPECT_EQ(ExtractFileName("dir/", true), "");
  EXPECT_EQ(ExtractFileName("", true), "");
}

TEST(Paths, MakeFullPathJoinsWithASlash) {
  EXPECT_EQ(MakeFullPath("/work/models", "wood.tga"), "/work/models/wood.tga");
  EXPECT_EQ(MakeFullPath("", "wood.tga"), "wood.tga");
}

TEST(Paths, GetRelativePathGivesTheFolderRelativeToTheDirectory) {
  EXPECT_EQ(GetRelativePath("maps/wood.tga", "/work"), "maps");
  EXPECT_EQ(GetRelativePath("/tmp/x/wood.tga", "/work"), "../tmp/x");
  EXPECT_EQ(GetRelativePath("/work/maps/wood.tga", "/work"), "maps");
  EXPECT_EQ(GetRelativePath("/work/wood.tga", "/work/models/cars"), "../..");
  EXPECT_EQ(GetRelativePath("/work/wood.tga", "/work/"), "");
  EXPECT_EQ(GetRelativePath("wood.tga", "/work"), "");
}

TEST(Paths, GetRelativePathKeepsTheDirectoryWhenNoRelativePathExists) {
  EXPECT_EQ(GetRelativePath("C:/maps/wood.tga", "/work"), "/work");
  EXPECT_EQ(GetRelativePath("d:\\maps\\wood.tga", "/work"), "/work");
  EXPECT_EQ(GetRelativePath("\\\\server\\share\\wood.tga", "/work"), "/work");
}

TEST(Paths, CurrentDirectoryIsTheProcesss) {
  char buffer[4096];
  ASSERT_NE(getcwd(buffer, sizeof buffer), nullptr);
  EXPECT_EQ(KGetCurrentDirectory(), buffer);
}

}  // namespace
