// ReadColladaFile, the one-call read of the public header.

#include <gtest/gtest.h>

#include "reader/collada_reader.h"
#include "tests/support/documents.h"

namespace zyltest {
namespace {

using namespace zylsdk;

const std::string kOneNode = Collada(
    "<library_visual_scenes><visual_scene id=\"world\"><node id=\"lonely\"/></visual_scene></library_visual_scenes>"
    "<library_nodes/>"
    "<scene><instance_visual_scene url=\"#world\"/></scene>");

TEST(ReadColladaFile, ReadsIntoANewSceneOfTheManagerWithTheMessagesOfThisRead) {
  KZylSdkManager manager;
  manager.GetUserNotification()->AddDetail(1, "earlier");
  // Any name: the reader is chosen by the call, not by the extension.
  TempFile file(kOneNode, ".xml");
  ColladaReadResult read = ReadColladaFile(manager, file.Path().c_str());
  EXPECT_TRUE(read.opened);
  EXPECT_TRUE(read.ok);
  ASSERT_NE(read.scene, nullptr);
  ASSERT_EQ(read.scene->GetNodes().size(), 1u);
  EXPECT_EQ(read.scene->GetNodes()[0]->GetName(), "lonely");
  ASSERT_EQ(read.messages.size(), 1u);
  EXPECT_EQ(read.messages[0].text, "Warning: library type not supported: library_nodes");
  EXPECT_EQ(read.xmlError, "");
  EXPECT_EQ(manager.GetUserNotification()->GetDetailCount(), 2);
}

TEST(ReadColladaFile, AFileThatCannotBeOpenedGivesAnEmptySceneAndLastErrorThree) {
  KZylSdkManager manager;
  ColladaReadResult read = ReadColladaFile(manager, "/nonexistent/model.dae");
  EXPECT_FALSE(read.opened);
  EXPECT_FALSE(read.ok);
  ASSERT_NE(read.scene, nullptr);
  EXPECT_TRUE(read.scene->GetNodes().empty());
  EXPECT_EQ(read.lastErrorId, 3);
  EXPECT_TRUE(read.messages.empty());
}

TEST(ReadColladaFile, NotWellFormedXmlSaysWhere) {
  KZylSdkManager manager;
  TempFile file("<COLLADA version=\"1.4.1\">\n<asset>\n</COLLADA>\n");
  ColladaReadResult read = ReadColladaFile(manager, file.Path().c_str());
  EXPECT_TRUE(read.opened);
  EXPECT_FALSE(read.ok);
  EXPECT_GT(read.xmlErrorLine, 1);
  EXPECT_NE(read.xmlError.Find("COLLADA"), -1) << read.xmlError.Buffer();
  ASSERT_EQ(read.messages.size(), 1u);
  EXPECT_EQ(read.messages[0].text, "ERROR: Unable to parse xml/dae file\n");
}

TEST(ReadColladaFile, AFaultyDocumentIsNotAnXmlError) {
  KZylSdkManager manager;
  TempFile file(Collada("<scene/><extra/>"));
  ColladaReadResult read = ReadColladaFile(manager, file.Path().c_str());
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(read.xmlError, "");
  EXPECT_EQ(read.xmlErrorLine, 0);
}

TEST(ReadColladaFile, TheCompleteOptionNameIsTheReaderOption) {
  KZylSdkManager manager;
  RegisterColladaReader(manager);
  std::unique_ptr<KZylReader> reader = manager.CreateReader("dae");
  TempFile file(kOneNode);
  ASSERT_TRUE(reader->FileOpen(file.Path().c_str()));
  KZylStreamOptions* options = reader->GetReadOptions();
  options->GetOption(kColladaOptionComplete).Set(true);
  EXPECT_TRUE(options->GetOption("COMPLETE").GetBool());
  EXPECT_TRUE(reader->Read(*KZylScene::Create(&manager, ""), options));
}

}  // namespace
}  // namespace zyltest
