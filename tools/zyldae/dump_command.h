#pragma once
// `zyldae dump [--brief] [--complete] FILE...`: each read as JSON (docs/dump.md). One file
// gives one dump document; several give an array of them, and a summary line on standard error.

namespace CLI {
class App;
}

namespace zyldae {

void AddDumpCommand(CLI::App& app, int& status);

}  // namespace zyldae
