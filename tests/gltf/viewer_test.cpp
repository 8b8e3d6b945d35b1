// The page of `zyldae view`, opened in headless Chromium: the screenshot shows the model, not
// only the page's background.

#include <gtest/gtest.h>
#include <tiny_gltf.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "tests/support/documents.h"

namespace {

std::vector<unsigned char> ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::vector<unsigned char>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

TEST(Viewer, HeadlessChromiumShowsTheExampleScene) {
  if (!zyltest::HasProgram("chromium")) GTEST_SKIP() << "chromium is not installed: the viewer page cannot be looked at";
  zyltest::TempFolder folder;
  const std::string page = folder.File("scene.html");
  const zyltest::ToolRun view = zyltest::RunTool(std::string("view ") + ZYL_SOURCE_DIR "/examples/scene.dae -o " + page);
  if (view.status == 1 && view.err.find("viewer script") != std::string::npos) GTEST_SKIP() << view.err;
  ASSERT_EQ(view.status, 0) << view.err;

  const std::string shot = folder.File("shot.png");
  const zyltest::ToolRun browser = zyltest::RunCommand(
      "timeout 120 chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run "
      "--disable-background-networking --disable-component-update --disable-sync --enable-unsafe-swiftshader "
      "--user-data-dir=" + folder.File("profile") + " --window-size=400,300 --virtual-time-budget=5000 --screenshot=" + shot +
      " file://" + page);
  ASSERT_EQ(browser.status, 0) << browser.err;

  const std::vector<unsigned char> png = ReadBytes(shot);
  ASSERT_FALSE(png.empty()) << browser.err;
  tinygltf::Image image;
  std::string error, warning;
  ASSERT_TRUE(tinygltf::LoadImageData(&image, 0, &error, &warning, 0, 0, png.data(), static_cast<int>(png.size()), nullptr)) << error;
  ASSERT_EQ(image.width, 400);
  ASSERT_EQ(image.component, 4);
  // The page's background is (216, 221, 228); the model covers part of the picture in other
  // colours.
  size_t model = 0;
  const size_t pixels = static_cast<size_t>(image.width) * static_cast<size_t>(image.height);
  for (size_t p = 0; p < pixels; ++p) {
    const unsigned char* rgb = &image.image[4 * p];
    if (std::abs(rgb[0] - 216) + std::abs(rgb[1] - 221) + std::abs(rgb[2] - 228) > 30) ++model;
  }
  EXPECT_GT(model, pixels / 50) << "the model covers " << model << " of " << pixels << " pixels";
  EXPECT_LT(model, pixels) << "the picture has no background";
}

}  // namespace
