#pragma once
// The flags of every command that reads documents: --complete, and --option NAME=VALUE for the
// integer read options (the limits: "MAX SCENE INSTANCES", "OUTPUT RATIO"...), which a user with
// an extreme but honest file raises.

#include <CLI/CLI.hpp>

#include "tools/zyldae/read_file.h"

namespace zyldae {

void AddReadFlags(CLI::App& command, ReadSettings& settings);

}  // namespace zyldae
