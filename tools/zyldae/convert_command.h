#pragma once
// `zyldae convert IN.dae OUT.gltf|OUT.glb [--complete]`: reads a document and writes it as
// glTF 2.0 (see gltf/gltf_writer.h); each kind of loss is listed on standard error.

#include <CLI/CLI.hpp>
#include <string>

#include "tools/zyldae/read_file.h"

namespace zyldae {

class ConvertCommand {
 public:
  // Adds the subcommand to `app`.
  explicit ConvertCommand(CLI::App& app);
  bool Chosen() const { return mCommand->parsed(); }
  // Exit status: 0 written, 1 the read or the write failed, 2 the input cannot be opened.
  int Run() const;

 private:
  CLI::App* mCommand;
  std::string mInput;
  std::string mOutput;
  ReadSettings mSettings;
};

}  // namespace zyldae
