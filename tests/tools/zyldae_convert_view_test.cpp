// `zyldae convert` and `zyldae view`: files written, exit statuses, what is left out.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/support/documents.h"

namespace {

using zyltest::RunTool;

const std::string kExample = ZYL_SOURCE_DIR "/examples/scene.dae";

std::string Slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

TEST(ZyldaeConvert, GltfWithItsBinaryBeside) {
  zyltest::TempFolder folder;
  const zyltest::ToolRun run = RunTool("convert " + kExample + " " + folder.File("scene.gltf"));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(Slurp(folder.File("scene.gltf")).find("\"uri\": \"scene.bin\""), std::string::npos);
  EXPECT_GT(std::filesystem::file_size(folder.File("scene.bin")), 0u);
  // The example's texture file is not there: said once.
  EXPECT_NE(run.err.find("left out: textures whose image file was not found\n"), std::string::npos);
}

TEST(ZyldaeConvert, GlbInBothReadingModes) {
  zyltest::TempFolder folder;
  for (const char* mode : {"", " --complete"}) {
    const zyltest::ToolRun run = RunTool("convert" + std::string(mode) + " " + kExample + " " + folder.File("scene.glb"));
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(Slurp(folder.File("scene.glb")).substr(0, 4), "glTF");
  }
}

TEST(ZyldaeConvert, ExitStatuses) {
  zyltest::TempFolder folder;
  EXPECT_EQ(RunTool("convert /nonexistent/file.dae " + folder.File("x.glb")).status, 2);
  EXPECT_EQ(RunTool("convert " + kExample).status, 2);  // no output named
  zyltest::TempFile notXml("this is not a document");
  const zyltest::ToolRun run = RunTool("convert " + notXml.Path() + " " + folder.File("x.glb"));
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("could not be read"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder.File("x.glb")));
  EXPECT_EQ(RunTool("convert " + kExample + " " + folder.File("missing/folder/x.glb")).status, 1);
}

TEST(ZyldaeView, PageHoldsTheModelAndTheScript) {
  zyltest::TempFolder folder;
  const std::string page = folder.File("page.html");
  const zyltest::ToolRun run = RunTool("view " + kExample + " -o " + page);
  if (run.status == 1 && run.err.find("viewer script") != std::string::npos) GTEST_SKIP() << run.err;
  ASSERT_EQ(run.status, 0) << run.err;
  const std::string html = Slurp(page);
  // The binary glTF starts with "glTF", which is "Z2xURg" in base64.
  EXPECT_NE(html.find("<script id=\"model\" type=\"application/octet-stream\">Z2xURg"), std::string::npos);
  EXPECT_EQ(html.find("http://"), html.find("http://www.w3.org"));  // nothing fetched from a network
  EXPECT_EQ(RunTool("view /nonexistent/file.dae -o " + page).status, 2);
}

}  // namespace
