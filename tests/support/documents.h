#pragma once
// Helpers for tests that read documents: writing a document to a temporary file, reading it
// the way the tool does, and looking at the notifications.

#include <string>
#include <vector>

#include "tools/zyldae/read_file.h"
#include "tools/zyldae/scene_dump.h"

namespace zyltest {

// A COLLADA document: the root with `version`, an empty asset, then `body`.
std::string Collada(const std::string& body, const std::string& version = "1.4.1");

// A file that is removed when the object goes.
class TempFile {
 public:
  explicit TempFile(const std::string& contents, const std::string& suffix = ".dae");
  ~TempFile();
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;
  const std::string& Path() const { return mPath; }

 private:
  std::string mPath;
};

// Reads a document given as text, through the manager and the reader as an application would.
zyldae::ReadResult ReadText(const std::string& document, const zyldae::ReadSettings& settings = {});
// The dump of such a read.
zyldae::Json DumpText(const std::string& document, bool brief = false, const zyldae::ReadSettings& settings = {});
// The settings of the complete reading.
inline zyldae::ReadSettings Complete() {
  zyldae::ReadSettings settings;
  settings.complete = true;
  return settings;
}

// The notification texts of a read, in order.
std::vector<std::string> Messages(const zyldae::ReadResult& read);
// How many notifications of a read are exactly `text`.
int CountMessage(const zyldae::ReadResult& read, const std::string& text);

// The largest resident size this process has had so far, in kilobytes.
long PeakResidentKilobytes();

// Runs the command-line tool with `arguments`; gives its exit status, standard output and
// standard error.
struct ToolRun {
  int status = -1;
  std::string out;
  std::string err;
};
ToolRun RunTool(const std::string& arguments);
// Runs a shell command line the same way.
ToolRun RunCommand(const std::string& commandLine);
// Whether the shell finds the program.
bool HasProgram(const std::string& name);

// An empty folder that is removed, with its contents, when the object goes.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  const std::string& Path() const { return mPath; }
  std::string File(const std::string& name) const { return mPath + "/" + name; }

 private:
  std::string mPath;
};

}  // namespace zyltest
