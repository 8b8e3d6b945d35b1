#include "tools/zyldae/convert_command.h"

#include <iostream>

#include "gltf/gltf_writer.h"
#include "tools/zyldae/read_flags.h"

namespace zyldae {

ConvertCommand::ConvertCommand(CLI::App& app) {
  mCommand = app.add_subcommand("convert", "Write the scene as glTF 2.0 (.gltf with a .bin beside it, or .glb)");
  mCommand->add_option("IN", mInput, "The .dae file")->required();
  mCommand->add_option("OUT", mOutput, "The .gltf or .glb file to write")->required();
  AddReadFlags(*mCommand, mSettings);
}

int ConvertCommand::Run() const {
  ReadResult read = ReadDocument(mInput.c_str(), mSettings);
  if (!read.opened) {
    std::cerr << "zyldae: cannot open " << mInput << '\n';
    return 2;
  }
  if (!read.ok) {
    std::cerr << "zyldae: " << mInput << " could not be read: " << read.errorText.Std() << '\n';
    return 1;
  }
  const zylgltf::GltfReport report = zylgltf::WriteGltfFile(*read.scene, mOutput);
  for (const std::string& loss : report.leftOut) std::cerr << "left out: " << loss << '\n';
  if (!report.ok) {
    std::cerr << "zyldae: " << report.error << '\n';
    return 1;
  }
  return 0;
}

}  // namespace zyldae
