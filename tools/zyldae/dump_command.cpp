#include "tools/zyldae/dump_command.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "tools/zyldae/read_each.h"
#include "tools/zyldae/scene_dump.h"

namespace zyldae {
namespace {

struct DumpOptions {
  std::vector<std::string> files;
  ReadSettings settings;
  bool brief = false;
};

int RunDump(const DumpOptions& options) {
  ReadTally tally;
  Json dumps = Json::array();
  int status = ReadEach(
      options.files, options.settings,
      [&](const std::string& name, const ReadResult& read) {
        dumps.push_back(DumpRead(read, name.c_str(), options.brief));
      },
      tally);
  if (options.files.size() == 1) {
    if (!dumps.empty()) WriteJson(std::cout, dumps[0]);
  } else {
    WriteJson(std::cout, dumps);
    std::cerr << TallyLine(tally) << '\n';
  }
  return status;
}

}  // namespace

void AddDumpCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<DumpOptions>();
  CLI::App* dump = app.add_subcommand("dump", "Write each read as JSON");
  dump->add_option("FILE", options->files, "The .dae files; - for standard input")->required();
  dump->add_flag("--brief", options->brief, "Leave out the long arrays, keep their counts");
  dump->add_flag("--complete", options->settings.complete,
                 "Read everything the kit can represent (read option COMPLETE)");
  dump->callback([options, &status] { status = RunDump(*options); });
}

}  // namespace zyldae
