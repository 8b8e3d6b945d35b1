// zyldae: reads COLLADA documents through the kit and shows what it read.
//
//   zyldae info [--complete] FILE...           each read, for a person
//   zyldae dump [--brief] [--complete] FILE... each read as JSON
//   zyldae convert [--complete] IN OUT.gltf|OUT.glb
//   zyldae view [--complete] IN [-o OUT.html]
//   zyldae --version
//
// FILE "-" is standard input. --complete reads everything the kit can represent (the read
// option "COMPLETE").
//
// Exit status: 0 when every read succeeded, 1 when a read failed (its output is still
// written), 2 for a usage error or a file that cannot be read.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "kit/version.h"
#include "tools/zyldae/command.h"
#include "tools/zyldae/convert_command.h"
#include "tools/zyldae/dump_command.h"
#include "tools/zyldae/info_command.h"
#include "tools/zyldae/view_command.h"

int main(int argc, char** argv) {
  CLI::App app{"Reads COLLADA documents (.dae) and shows the scenes they hold."};
  app.name("zyldae");
  app.require_subcommand(1);
  app.set_version_flag("--version", std::string("zyldae ") + ZYLCOLLADA_VERSION_STRING);
  int status = zyldae::kExitOk;
  zyldae::AddInfoCommand(app, status);
  zyldae::AddDumpCommand(app, status);
  zyldae::ConvertCommand convert(app);
  zyldae::ViewCommand view(app);

  if (argc < 2) {
    std::cerr << app.help();
    return zyldae::kExitUsage;
  }
  // CLI11 would only say that a subcommand is required.
  const std::vector<CLI::App*> commands = app.get_subcommands([](CLI::App*) { return true; });
  const bool known = std::any_of(commands.begin(), commands.end(), [&](CLI::App* c) { return c->get_name() == argv[1]; });
  if (argv[1][0] != '-' && !known) {
    std::cerr << "zyldae: unknown command " << argv[1] << "\n\n" << app.help();
    return zyldae::kExitUsage;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForVersion& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    std::cerr << "zyldae: " << e.what() << "\n\n" << app.help();
    return zyldae::kExitUsage;
  }
  if (convert.Chosen()) return convert.Run();
  if (view.Chosen()) return view.Run();
  return status;
}
