// The asset block: up axis, unit and document information.

#include <cmath>

#include "reader/collada_import.h"
#include "tests/reader/decimal_comma_locale.h"
#include "tests/reader/reader_file_test.h"

namespace {

using namespace zylsdk;

class AssetTest : public zyltest::ReaderTest {
 protected:
  // Imports an asset element holding `children` into the fixture's scene and `info`.
  void Import(const std::string& children) {
    EXPECT_TRUE(reader->ImportAsset(Parse("<asset>" + children + "</asset>"), *scene, *info));
  }
  double Unit() const { return scene->GetGlobalSettings().GetSystemUnit().GetScaleFactor(); }
  const KZylAxisSystem& Axis() const { return scene->GetGlobalSettings().GetAxisSystem(); }

  KZylSceneInfo* info = KZylSceneInfo::Create(&manager, "");
};

std::string TooSmall(const std::string& text) {
  return "Warning: Meter conversion factor is too small or invalid: " + text + ". Using 1 instead.";
}

TEST_F(AssetTest, MeterIsConvertedToCentimetres) {
  Import("<unit meter=\"0.01\" name=\"centimeter\"/>");
  EXPECT_DOUBLE_EQ(Unit(), 1.0);
  Import("<unit meter=\"1\"/>");
  EXPECT_DOUBLE_EQ(Unit(), 100.0);
  Import("<unit meter=\"0.0254\"/>");
  EXPECT_DOUBLE_EQ(Unit(), 2.54);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(AssetTest, ATooSmallMeterWarnsAndCountsAsOneMetre) {
  Import("<unit meter=\"0.00001\"/>");
  EXPECT_EQ(Messages(), std::vector<std::string>{TooSmall("0.00001")});
  EXPECT_DOUBLE_EQ(Unit(), 100.0);
  Import("<unit meter=\"0\"/>");
  Import("<unit meter=\"-2\"/>");
  Import("<unit meter=\"9.99e-5\"/>");
  EXPECT_EQ(CountMessage(TooSmall("0")), 1);
  EXPECT_EQ(CountMessage(TooSmall("-2")), 1);
  EXPECT_EQ(CountMessage(TooSmall("9.99e-5")), 1);
  EXPECT_DOUBLE_EQ(Unit(), 100.0);
}

TEST_F(AssetTest, TheLimitIsTheSinglePrecisionTenThousandth) {
  // 1e-4 as a double is above the single-precision 1e-4 that is the limit.
  Import("<unit meter=\"0.0001\"/>");
  EXPECT_TRUE(Messages().empty());
  EXPECT_DOUBLE_EQ(Unit(), 0.01);
  Import("<unit meter=\"9.9999997e-05\"/>");
  EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(AssetTest, MeterIsReadLikeScanf) {
  Import("<unit meter=\" 0.5\"/>");
  EXPECT_DOUBLE_EQ(Unit(), 50.0);
  Import("<unit meter=\"2cm\"/>");
  EXPECT_DOUBLE_EQ(Unit(), 200.0);
  Import("<unit meter=\"+0.25\"/>");
  EXPECT_DOUBLE_EQ(Unit(), 25.0);
  Import("<unit meter=\"1e-2\"/>");
  EXPECT_DOUBLE_EQ(Unit(), 1.0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(AssetTest, MeterReadsHexadecimalFormsAsScanfDoes) {
  Import("<unit meter=\"0x10\"/>");
  EXPECT_DOUBLE_EQ(Unit(), 1600.0);
  Import("<unit meter=\"0x1p-2\"/>");
  EXPECT_DOUBLE_EQ(Unit(), 25.0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(AssetTest, AMeterThatUnderflowsIsTooSmall) {
  Import("<unit meter=\"1e-400\"/>");
  EXPECT_DOUBLE_EQ(Unit(), 100.0);
  EXPECT_EQ(Messages(), std::vector<std::string>({TooSmall("1e-400")}));
}

TEST_F(AssetTest, AMeterTooLargeToRepresentLeavesOneMetre) {
  Import("<unit meter=\"1e999\"/>");
  EXPECT_DOUBLE_EQ(Unit(), 100.0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(AssetTest, AUnitWithoutANumberIsOneMetre) {
  Import("<unit/>");
  EXPECT_DOUBLE_EQ(Unit(), 100.0);
  Import("<unit meter=\"0.01\"/>");
  Import("<unit meter=\"abc\"/>");  // nothing read: one metre, not the previous unit
  EXPECT_DOUBLE_EQ(Unit(), 100.0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(AssetTest, ANotANumberMeterPassesTheTest) {
  Import("<unit meter=\"nan\"/>");
  EXPECT_TRUE(Messages().empty());
  EXPECT_TRUE(std::isnan(Unit()));
}

TEST_F(AssetTest, MeterIsReadTheCWayInAnyLocale) {
  zyltest::DecimalCommaLocale locale;
  if (!locale.Active()) GTEST_SKIP() << "no locale with a decimal comma on this system";
  Import("<unit meter=\"0.01\"/>");
  EXPECT_DOUBLE_EQ(Unit(), 1.0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(AssetTest, WithoutUnitTheSceneKeepsItsUnit) {
  scene->GetGlobalSettings().SetSystemUnit(KZylSystemUnit(7.0));
  Import("<up_axis>Y_UP</up_axis>");
  EXPECT_DOUBLE_EQ(Unit(), 7.0);
  KZylScene* fresh = KZylScene::Create(&manager, "");
  EXPECT_TRUE(reader->ImportAsset(Parse("<asset/>"), *fresh, *info));
  EXPECT_DOUBLE_EQ(fresh->GetGlobalSettings().GetSystemUnit().GetScaleFactor(), 1.0);
}

TEST_F(AssetTest, UpAxisSetsTheAxisSystem) {
  Import("<up_axis>X_UP</up_axis>");
  EXPECT_EQ(Axis(), KZylAxisSystem(1, 2, 0));
  Import("<up_axis>Z_UP</up_axis>");
  EXPECT_EQ(Axis(), KZylAxisSystem(3, -2, 0));
  Import("<up_axis>Y_UP</up_axis>");
  EXPECT_EQ(Axis(), KZylAxisSystem(2, 2, 0));
  EXPECT_TRUE(Messages().empty());
}

TEST_F(AssetTest, AnUnrecognizedUpAxisWarnsAndLeavesTheAxisSystem) {
  Import("<up_axis>Z_UP</up_axis>");
  Import("<up_axis>y_up</up_axis>");
  Import("<up_axis> Y_UP</up_axis>");
  Import("<up_axis/>");
  EXPECT_EQ(Messages(), (std::vector<std::string>{"Warning: Unrecognized up_axis value: y_up",
                                                  "Warning: Unrecognized up_axis value:  Y_UP",
                                                  "Warning: Unrecognized up_axis value: "}));
  EXPECT_EQ(Axis(), KZylAxisSystem(3, -2, 0));
}

TEST_F(AssetTest, DocumentInformationFillsTheSceneInfo) {
  Import(
      "<contributor><author>Ada</author><authoring_tool>tool</authoring_tool><comments>inner</comments>"
      "</contributor><created>2020-01-01T00:00:00Z</created><modified>2021-01-01T00:00:00Z</modified>"
      "<title>Box</title><subject>Test</subject><keywords>cube box</keywords><revision>3</revision>"
      "<comments>Made by hand</comments><extra/>");
  EXPECT_EQ(info->mAuthor, "Ada");
  EXPECT_EQ(info->mTitle, "Box");
  EXPECT_EQ(info->mSubject, "Test");
  EXPECT_EQ(info->mKeywords, "cube box");
  EXPECT_EQ(info->mRevision, "3");
  EXPECT_EQ(info->mComment, "Made by hand");  // the contributor's comments are not the document's
  EXPECT_TRUE(Messages().empty());
}

TEST_F(AssetTest, LaterChildrenOverwriteEarlierOnes) {
  Import(
      "<contributor><author>First</author><author>Second</author></contributor>"
      "<title>One</title><title>Two</title><contributor><author>Third</author></contributor>"
      "<contributor/>");
  EXPECT_EQ(info->mAuthor, "Third");
  EXPECT_EQ(info->mTitle, "Two");
}

TEST_F(AssetTest, AbsentChildrenLeaveTheSceneInfoAlone) {
  info->mTitle = "kept";
  Import("<unit meter=\"1\"/>");
  EXPECT_EQ(info->mTitle, "kept");
  EXPECT_EQ(info->mAuthor, "");
}

TEST_F(AssetTest, TextIsKeptByteForByte) {
  Import("<title>  Caf\xc3\xa9 &amp; \xe6\x97\xa5\n</title>");
  EXPECT_EQ(info->mTitle.Std(), "  Caf\xc3\xa9 & \xe6\x97\xa5\n");
}

TEST(AssetInTheDump, UnitAxisAndSceneInfo) {
  zyldae::Json dump = zyltest::DumpText(zyltest::ColladaWithAsset(
      "<contributor><author>Ada</author></contributor><title>T</title><unit meter=\"0.01\"/>"
      "<up_axis>Z_UP</up_axis>"));
  EXPECT_EQ(dump["ok"], true);
  EXPECT_EQ(dump["scene"]["systemUnit"], 1.0);
  EXPECT_EQ(dump["scene"]["axisSystem"]["up"], 3);
  EXPECT_EQ(dump["scene"]["axisSystem"]["front"], -2);
  EXPECT_EQ(dump["scene"]["sceneInfo"]["author"], "Ada");
  EXPECT_EQ(dump["scene"]["sceneInfo"]["title"], "T");
}

}  // namespace
