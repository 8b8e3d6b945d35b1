// .zae archives: the complete reading opens the zip and reads the document its manifest.xml
// names; the default reading sees a file that is not XML, as it always has.

#include <gtest/gtest.h>
#include <zip.h>

#include <string>
#include <utility>
#include <vector>

#include "reader/collada_import.h"
#include "tests/reader/geometry/complete_scene_xml.h"

namespace zyltest {
namespace {

// A zip archive at a temporary path holding `entries` (name, contents).
class ZipFile {
 public:
  explicit ZipFile(const std::vector<std::pair<std::string, std::string>>& entries) : mFile("", ".zae") {
    int error = 0;
    zip_t* archive = zip_open(mFile.Path().c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    EXPECT_NE(archive, nullptr);
    if (!archive) return;
    // libzip reads the buffers when the archive closes: they must not move before.
    mContents.reserve(entries.size());
    for (const auto& [name, contents] : entries) {
      mContents.push_back(contents);
      zip_source_t* source = zip_source_buffer(archive, mContents.back().data(), mContents.back().size(), 0);
      EXPECT_GE(zip_file_add(archive, name.c_str(), source, ZIP_FL_OVERWRITE), 0);
    }
    EXPECT_EQ(zip_close(archive), 0);
  }
  const std::string& Path() const { return mFile.Path(); }

 private:
  TempFile mFile;
  std::vector<std::string> mContents;
};

std::string Manifest(const std::string& root) {
  return "<?xml version=\"1.0\"?>\n<dae_root>" + root + "</dae_root>\n";
}

std::string TriangleScene() {
  return SquareMeshScene("<triangles>" + VertexInput() + "<p>0 1 2</p></triangles>");
}

TEST(ZaeArchives, TheCompleteReadingReadsTheDocumentTheManifestNames) {
  ZipFile archive({{"manifest.xml", Manifest("./models/scene.dae")}, {"models/scene.dae", TriangleScene()}});
  const zyldae::Json dump = zyldae::DumpRead(ReadPath(archive.Path(), Complete()), archive.Path().c_str(), false);
  ASSERT_TRUE(dump["ok"]) << dump["notifications"];
  EXPECT_EQ(FirstNodeAttribute(dump)["polygonCount"], 1);
}

TEST(ZaeArchives, TheDefaultReadingDoesNotOpenArchives) {
  ZipFile archive({{"manifest.xml", Manifest("scene.dae")}, {"scene.dae", TriangleScene()}});
  const zyldae::ReadResult read = ReadPath(archive.Path());
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read), std::vector<std::string>{"ERROR: Unable to parse xml/dae file\n"});
}

TEST(ZaeArchives, AnArchiveWithoutManifestIsRefusedWithItsReason) {
  ZipFile archive({{"scene.dae", TriangleScene()}});
  const zyldae::ReadResult read = ReadPath(archive.Path(), Complete());
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read), (std::vector<std::string>{
                                "ERROR: the zip archive has no manifest.xml: it is not a .zae document",
                                "ERROR: Unable to parse xml/dae file\n"}));
}

TEST(ZaeArchives, AManifestWithoutRootOrWithAMissingRootIsRefused) {
  ZipFile noRoot({{"manifest.xml", "<manifest/>"}, {"scene.dae", TriangleScene()}});
  EXPECT_EQ(CountMessage(ReadPath(noRoot.Path(), Complete()), "ERROR: the .zae manifest names no <dae_root>"), 1);
  ZipFile missing({{"manifest.xml", Manifest("other.dae")}, {"scene.dae", TriangleScene()}});
  EXPECT_EQ(CountMessage(ReadPath(missing.Path(), Complete()),
                         "ERROR: the .zae document other.dae is not in the archive"),
            1);
}

TEST(ZaeArchives, TheDocumentUnpacksWithinTheBound) {
  // Highly compressible: far more than 50 times the archive's size, past the floor set here.
  const std::string padding = "<!--" + std::string(400000, ' ') + "-->";
  ZipFile archive({{"manifest.xml", Manifest("scene.dae")}, {"scene.dae", padding + TriangleScene()}});
  zylsdk::KZylSdkManager manager;
  zylsdk::KZylReaderCollada reader(manager);
  ASSERT_TRUE(reader.FileOpen(archive.Path().c_str()));
  zylsdk::KZylStreamOptions* options = reader.GetReadOptions();
  options->GetOption(zylsdk::kColladaOptionComplete).Set(true);
  options->GetOption("GZIP FLOOR").Set(1000);
  zylsdk::KZylScene* scene = zylsdk::KZylScene::Create(&manager, "");
  EXPECT_FALSE(reader.Read(*scene, options));
  const auto& details = manager.GetUserNotification()->GetDetails();
  ASSERT_FALSE(details.empty());
  EXPECT_EQ(details.front().text.Std().rfind("ERROR: the compressed document unpacks to more than ", 0), 0u)
      << details.front().text.Std();
}

TEST(ZaeArchives, TheManagerHasAReaderForZaeNames) {
  zylsdk::KZylSdkManager manager;
  zylsdk::RegisterColladaReader(manager);
  EXPECT_NE(manager.CreateReader("model.zae"), nullptr);
}

}  // namespace
}  // namespace zyltest
