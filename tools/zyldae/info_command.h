#pragma once
// `zyldae info [--complete] FILE...`: each read printed for a person, then, for several files,
// a summary line.

namespace CLI {
class App;
}

namespace zyldae {

void AddInfoCommand(CLI::App& app, int& status);

}  // namespace zyldae
