// zyldae: reads a COLLADA document through the kit and shows what it read.
//
//   zyldae info [--complete] FILE           the read, for a person
//   zyldae dump [--brief] [--complete] FILE the read as JSON
//
// --complete reads everything the kit can represent (the read option "COMPLETE").
//
// Exit status: 0 when the read succeeded, 1 when it failed (the output is still written),
// 2 for a usage error or a file that cannot be opened.

#include <CLI/CLI.hpp>
#include <iostream>

#include "reader/xml_document.h"
#include "tools/zyldae/convert_command.h"
#include "tools/zyldae/view_command.h"
#include "tools/zyldae/scene_dump.h"
#include "tools/zyldae/scene_info.h"

namespace {

constexpr int kUsageError = 2;

// Says on standard error where the XML is not well formed, when that is why a read failed.
void ExplainParseFailure(const std::string& file) {
  zylsdk::XmlParseFailure failure;
  if (zylsdk::ParseXmlFile(file.c_str(), &failure)) return;
  std::cerr << file << ":" << failure.line << ": " << failure.message.Std() << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Reads a COLLADA document (.dae) and shows the scene it holds."};
  app.require_subcommand(1);
  std::string file;
  bool brief = false;
  zyldae::ReadSettings settings;
  const char* const completeHelp = "Read everything the kit can represent (read option COMPLETE)";
  CLI::App* info = app.add_subcommand("info", "Print the scene for a person");
  info->add_option("FILE", file, "The .dae file")->required();
  info->add_flag("--complete", settings.complete, completeHelp);
  CLI::App* dump = app.add_subcommand("dump", "Write the scene as JSON");
  dump->add_option("FILE", file, "The .dae file")->required();
  dump->add_flag("--brief", brief, "Leave out the long arrays, keep their counts");
  dump->add_flag("--complete", settings.complete, completeHelp);
  zyldae::ConvertCommand convert(app);
  zyldae::ViewCommand view(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    app.exit(e);
    return kUsageError;
  }

  if (convert.Chosen()) return convert.Run();
  if (view.Chosen()) return view.Run();
  zyldae::ReadResult read = zyldae::ReadDocument(file.c_str(), settings);
  if (!read.opened) {
    std::cerr << "zyldae: cannot open " << file << '\n';
    return kUsageError;
  }
  if (*info) {
    zyldae::PrintInfo(std::cout, read, file.c_str());
    if (!read.ok) ExplainParseFailure(file);
  } else {
    zyldae::WriteJson(std::cout, zyldae::DumpRead(read, file.c_str(), brief));
  }
  return read.ok ? 0 : 1;
}
