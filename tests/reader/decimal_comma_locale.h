#pragma once
// A process locale whose decimal separator is a comma, for tests that check that numbers are
// read the C way whatever the locale. It uses de_DE.UTF-8 when the system has it, otherwise
// compiles that locale with localedef into a temporary folder when the locale sources are
// installed. The C locale comes back when the object goes.

#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <string>

namespace zyltest {

class DecimalCommaLocale {
 public:
  DecimalCommaLocale() {
    if (Switch()) return;
    char folder[] = "/tmp/zyltest-locale-XXXXXX";
    if (!mkdtemp(folder)) return;
    mFolder = folder;
    std::string command = "localedef -i de_DE -f UTF-8 " + mFolder + "/de_DE.UTF-8 >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) return;
    setenv("LOCPATH", mFolder.c_str(), 1);
    Switch();
  }
  ~DecimalCommaLocale() {
    std::setlocale(LC_ALL, "C");
    if (!mFolder.empty()) {
      unsetenv("LOCPATH");
      int removed = std::system(("rm -rf " + mFolder).c_str());
      (void)removed;
    }
  }
  DecimalCommaLocale(const DecimalCommaLocale&) = delete;
  DecimalCommaLocale& operator=(const DecimalCommaLocale&) = delete;

  // True when the process now formats and parses 1.5 as "1,5".
  bool Active() const { return mActive; }

 private:
  bool Switch() {
    mActive = std::setlocale(LC_ALL, "de_DE.UTF-8") && std::strcmp(std::localeconv()->decimal_point, ",") == 0;
    return mActive;
  }

  bool mActive = false;
  std::string mFolder;
};

}  // namespace zyltest
