#include "tools/zyldae/info_command.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "tools/zyldae/read_each.h"
#include "tools/zyldae/read_flags.h"
#include "tools/zyldae/scene_info.h"

namespace zyldae {
namespace {

struct InfoOptions {
  std::vector<std::string> files;
  ReadSettings settings;
};

int RunInfo(const InfoOptions& options) {
  ReadTally tally;
  int status = ReadEach(
      options.files, options.settings,
      [&](const std::string& name, const ReadResult& read) {
        if (tally.files > 1) std::cout << '\n';
        PrintInfo(std::cout, read, name.c_str());
        // Where the XML is not well formed, when that is why the read failed.
        if (!read.xmlError.IsEmpty()) std::cerr << name << ":" << read.xmlErrorLine << ": " << read.xmlError.Std() << '\n';
      },
      tally);
  if (options.files.size() > 1) std::cout << '\n' << TallyLine(tally) << '\n';
  return status;
}

}  // namespace

void AddInfoCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<InfoOptions>();
  CLI::App* info = app.add_subcommand("info", "Print each read for a person");
  info->add_option("FILE", options->files, "The .dae files; - for standard input")->required();
  AddReadFlags(*info, options->settings);
  info->callback([options, &status] { status = RunInfo(*options); });
}

}  // namespace zyldae
