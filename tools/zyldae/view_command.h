#pragma once
// `zyldae view IN.dae [-o OUT.html] [--complete]`: writes one self-contained page that shows
// the document converted to binary glTF, with the bundled three.js viewer; opening it needs no
// network.

#include <CLI/CLI.hpp>
#include <string>

#include "tools/zyldae/read_file.h"

namespace zyldae {

class ViewCommand {
 public:
  // Adds the subcommand to `app`.
  explicit ViewCommand(CLI::App& app);
  bool Chosen() const { return mCommand->parsed(); }
  // Exit status: 0 written, 1 the read failed or the page could not be made, 2 the input
  // cannot be opened.
  int Run() const;

 private:
  CLI::App* mCommand;
  std::string mInput;
  std::string mOutput;  // default: the input's name with ".html", in the current folder
  ReadSettings mSettings;
};

// The page: the viewer script and the binary glTF, base64-encoded, in one HTML document.
std::string ViewerPage(const std::string& title, const std::string& viewerScript, const std::string& glb);

}  // namespace zyldae
