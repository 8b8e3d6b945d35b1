#include "tools/zyldae/read_flags.h"

#include <string>
#include <vector>

namespace zyldae {
namespace {

// "NAME=VALUE" with an integer value, split at the last '='.
std::pair<zylsdk::KString, int> IntegerOption(const std::string& text) {
  const size_t equals = text.rfind('=');
  if (equals == std::string::npos || equals == 0)
    throw CLI::ValidationError("--option", "expected NAME=VALUE, got \"" + text + "\"");
  const std::string value = text.substr(equals + 1);
  size_t used = 0;
  int number = 0;
  try {
    number = std::stoi(value, &used);
  } catch (const std::exception&) {
    used = 0;
  }
  if (used == 0 || used != value.size())
    throw CLI::ValidationError("--option", "the value of \"" + text + "\" is not an integer");
  return {zylsdk::KString(text.substr(0, equals)), number};
}

}  // namespace

void AddReadFlags(CLI::App& command, ReadSettings& settings) {
  command.add_flag("--complete", settings.complete, "Read everything the kit can represent (read option COMPLETE)");
  command.add_option_function<std::vector<std::string>>(
      "--option",
      [&settings](const std::vector<std::string>& texts) {
        for (const std::string& text : texts) settings.integerOptions.push_back(IntegerOption(text));
      },
      "Set an integer read option, such as a limit: --option \"MAX SCENE INSTANCES=100\" (repeatable)");
}

}  // namespace zyldae
