// Every notification says where it arose: the line of the element being read and the id (or
// else the name) of the nearest element that has one. The texts themselves do not change.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/documents.h"

namespace zyltest {
namespace {

using Location = zylsdk::KZylUserNotification::Location;

// The location of the notification whose text is exactly `text`; a test failure when there is
// none.
Location LocationOf(const zyldae::ReadResult& read, const std::string& text) {
  for (const auto& detail : read.notifications)
    if (detail.text.Std() == text) return detail.location;
  ADD_FAILURE() << "no notification \"" << text << "\"";
  return {};
}

void ExpectLocation(const zyldae::ReadResult& read, const std::string& text, int line, const std::string& element) {
  const Location location = LocationOf(read, text);
  EXPECT_EQ(location.line, line) << text;
  EXPECT_EQ(location.element.Std(), element) << text;
}

// A document whose lines are the given ones, numbered from 1.
std::string Lines(std::initializer_list<const char*> lines) {
  std::string text;
  for (const char* line : lines) text += std::string(line) + "\n";
  return text;
}

const char* const kHeader = "<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" version=\"1.4.1\">";

TEST(LocatedMessages, AnAssetMessageIsAtTheAssetWhichNothingNames) {
  const auto read = ReadText(Lines({kHeader,                                           // 1
                                    "<asset>",                                         // 2
                                    "  <up_axis>W_UP</up_axis>",                       // 3
                                    "</asset>",                                        // 4
                                    "</COLLADA>"}));
  ExpectLocation(read, "Warning: Unrecognized up_axis value: W_UP", 2, "");
}

TEST(LocatedMessages, AGeometryChildIsNamedByItsLineAndItsGeometry) {
  const auto read = ReadText(Lines({kHeader,                                           // 1
                                    "<asset/>",                                        // 2
                                    "<library_geometries>",                            // 3
                                    "  <geometry id=\"hull\" name=\"Hull\">",          // 4
                                    "    <extra/>",                                    // 5
                                    "  </geometry>",                                   // 6
                                    "</library_geometries>",                           // 7
                                    "</COLLADA>"}));
  ExpectLocation(read, "ERROR: Unrecognized geometry element: extra", 5, "hull");
}

TEST(LocatedMessages, ANameStandsInWhereNoElementAroundHasAnId) {
  const auto read = ReadText(Lines({kHeader,                                           // 1
                                    "<asset/>",                                        // 2
                                    "<library_geometries>",                            // 3
                                    "  <geometry name=\"Hull\">",                      // 4
                                    "    <spline/>",                                   // 5
                                    "  </geometry>",                                   // 6
                                    "</library_geometries>",                           // 7
                                    "</COLLADA>"}));
  ExpectLocation(read, "ERROR: Unrecognized geometry element: spline", 5, "Hull");
}

TEST(LocatedMessages, ACameraMessageIsAtItsCamera) {
  const auto read = ReadText(Lines({kHeader,                                           // 1
                                    "<asset/>",                                        // 2
                                    "<library_cameras>",                               // 3
                                    "  <camera id=\"eye\">",                           // 4
                                    "  </camera>",                                     // 5
                                    "</library_cameras>",                              // 6
                                    "</COLLADA>"}));
  ExpectLocation(read, "ERROR: Camera node eye has no <optics> node.", 4, "eye");
}

TEST(LocatedMessages, AnEffectMessageIsAtItsEffect) {
  const auto read = ReadText(Lines({kHeader,                                           // 1
                                    "<asset/>",                                        // 2
                                    "<library_effects>",                               // 3
                                    "  <effect id=\"shiny\">",                         // 4
                                    "    <profile_GLSL/>",                             // 5
                                    "  </effect>",                                     // 6
                                    "</library_effects>",                              // 7
                                    "<library_materials>",                             // 8
                                    "  <material id=\"m\"><instance_effect url=\"#shiny\"/></material>",  // 9
                                    "</library_materials>",                            // 10
                                    "</COLLADA>"}));
  ExpectLocation(read, "ERROR: no common profile found for library shiny", 4, "shiny");
}

TEST(LocatedMessages, ANodeChildIsAtItsLineInsideTheNode) {
  const auto read = ReadText(Lines({kHeader,                                           // 1
                                    "<asset/>",                                        // 2
                                    "<library_visual_scenes>",                         // 3
                                    "  <visual_scene id=\"world\">",                   // 4
                                    "    <node id=\"arm\">",                           // 5
                                    "      <perspective/>",                            // 6
                                    "    </node>",                                     // 7
                                    "  </visual_scene>",                               // 8
                                    "</library_visual_scenes>",                        // 9
                                    "</COLLADA>"}));
  ExpectLocation(read, "Warning: <perspective> is not supported.", 6, "arm");
}

TEST(LocatedMessages, AnAnimationMessageIsAtItsChannel) {
  const auto read = ReadText(Lines({kHeader,                                           // 1
                                    "<asset/>",                                        // 2
                                    "<library_animations>",                            // 3
                                    "  <animation id=\"move\">",                       // 4
                                    "    <channel source=\"#s\" target=\"ghost/translate.X\"/>",  // 5
                                    "  </animation>",                                  // 6
                                    "</library_animations>",                           // 7
                                    "<library_visual_scenes>",                         // 8
                                    "  <visual_scene id=\"world\"><node id=\"n\"/></visual_scene>",  // 9
                                    "</library_visual_scenes>",                        // 10
                                    "<scene><instance_visual_scene url=\"#world\"/></scene>",  // 11
                                    "</COLLADA>"}));
  ASSERT_FALSE(read.notifications.empty());
  const auto& last = read.notifications.back();
  EXPECT_EQ(last.location.line, 5) << last.text.Std();
  EXPECT_EQ(last.location.element.Std(), "move");
}

TEST(LocatedMessages, AStructureMessageIsAtTheElementOfTheDocument) {
  const auto read = ReadText(Lines({kHeader,                                           // 1
                                    "<asset/>",                                        // 2
                                    "<library_whatever id=\"odd\"/>",                  // 3
                                    "</COLLADA>"}));
  ExpectLocation(read, "Warning: unknown structure in the main structure: <library_whatever>", 3, "odd");
}

TEST(LocatedMessages, TheCompleteReadingLocatesItsOwnMessages) {
  const auto read = ReadText(Lines({kHeader,                                           // 1
                                    "<library_cameras/>",                              // 2
                                    "<asset/>",                                        // 3
                                    "</COLLADA>"}),
                             Complete());
  ExpectLocation(read, "Warning: <asset> is not the first element: read where it stands", 3, "");
}

TEST(LocatedMessages, AParseFailureIsAtTheParsersLine) {
  const auto read = ReadText(Lines({kHeader,                                           // 1
                                    "<asset/>",                                        // 2
                                    "<oops>",                                          // 3
                                    "</COLLADA>"}));
  ASSERT_FALSE(read.ok);
  ASSERT_FALSE(read.notifications.empty());
  EXPECT_EQ(read.notifications.back().location.line, read.xmlErrorLine);
  EXPECT_GT(read.xmlErrorLine, 0);
}

TEST(LocatedMessages, InfoWritesThemAsCompilersDo) {
  TempFile file(Lines({kHeader,                                                        // 1
                       "<asset>",                                                      // 2
                       "  <up_axis>W_UP</up_axis>",                                    // 3
                       "</asset>",                                                     // 4
                       "</COLLADA>"}));
  const ToolRun run = RunTool("info " + file.Path());
  EXPECT_NE(run.out.find(file.Path() + ":2: Warning: Unrecognized up_axis value: W_UP\n"), std::string::npos)
      << run.out;
}

TEST(LocatedMessages, TheDumpCarriesLineAndElement) {
  const zyldae::Json dump = DumpText(Lines({kHeader,                                   // 1
                                            "<asset/>",                                // 2
                                            "<library_whatever id=\"odd\"/>",          // 3
                                            "</COLLADA>"}));
  EXPECT_EQ(dump["dump"], 2);
  ASSERT_EQ(dump["notifications"].size(), 1u);
  EXPECT_EQ(dump["notifications"][0]["line"], 3);
  EXPECT_EQ(dump["notifications"][0]["element"], "odd");
}

}  // namespace
}  // namespace zyltest
