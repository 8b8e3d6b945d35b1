#include "tools/zyldae/dump_command.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "tools/zyldae/read_each.h"
#include "tools/zyldae/read_flags.h"
#include "tools/zyldae/scene_dump.h"

namespace zyldae {
namespace {

struct DumpOptions {
  std::vector<std::string> files;
  ReadSettings settings;
  bool brief = false;
  bool compact = false;
};

// Each dump is written as the scene is walked, straight to standard output: nothing of it is
// held in memory.
int RunDump(const DumpOptions& options) {
  ReadTally tally;
  // Indentation grows with depth: compact output stays proportionate to a deep scene.
  JsonStreamWriter writer(std::cout, options.compact ? 0 : 2);
  const bool several = options.files.size() != 1;
  if (several) writer.BeginArray(false);
  int status = ReadEach(
      options.files, options.settings,
      [&](const std::string& name, const ReadResult& read) { DumpRead(read, name.c_str(), options.brief, writer); },
      tally);
  if (several) {
    writer.EndArray();
    writer.Flush();
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
  dump->add_flag("--compact", options->compact, "No indentation and no line breaks inside a document");
  AddReadFlags(*dump, options->settings);
  dump->callback([options, &status] { status = RunDump(*options); });
}

}  // namespace zyldae
