// `--option NAME=VALUE`: every reading command sets integer read options, such as the limits,
// so that a user of the tool can raise a limit its messages name.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/documents.h"

namespace zyltest {
namespace {

// A node of three attributes.
std::string ThreeAttributes() {
  return Collada("<library_visual_scenes><visual_scene id=\"vs\"><node id=\"n\" name=\"n\" sid=\"n\"/></visual_scene>"
                 "</library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene>");
}

TEST(ReadOption, TheToolSetsALimit) {
  TempFile file(ThreeAttributes());
  EXPECT_EQ(RunTool("info " + file.Path()).status, 0);
  const ToolRun lowered = RunTool("info --option \"MAX ATTRIBUTES PER ELEMENT=2\" " + file.Path());
  EXPECT_NE(lowered.status, 0);
  EXPECT_NE(lowered.out.find("ERROR: an element has more than 2 attributes (read option MAX ATTRIBUTES PER ELEMENT)"),
            std::string::npos)
      << lowered.out;
  EXPECT_EQ(RunTool("dump --brief --option \"MAX ATTRIBUTES PER ELEMENT=3\" " + file.Path()).status, 0);
}

TEST(ReadOption, AnUnknownNameFailsTheRead) {
  TempFile file(ThreeAttributes());
  const ToolRun run = RunTool("info --option NO_SUCH_OPTION=3 " + file.Path());
  EXPECT_NE(run.status, 0);
  EXPECT_NE(run.out.find("ERROR: unknown integer read option: NO_SUCH_OPTION"), std::string::npos) << run.out;
}

TEST(ReadOption, AValueThatIsNotAnIntegerIsRefusedBeforeReading) {
  TempFile file(ThreeAttributes());
  for (const char* option : {"OUTPUT RATIO", "\"OUTPUT RATIO=many\"", "\"OUTPUT RATIO=3x\""}) {
    const ToolRun run = RunTool(std::string("info --option ") + option + " " + file.Path());
    EXPECT_NE(run.status, 0) << option;
    EXPECT_NE(run.err.find("--option"), std::string::npos) << option << ": " << run.err;
  }
}

}  // namespace
}  // namespace zyltest
