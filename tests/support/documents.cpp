#include "tests/support/documents.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>

namespace zyltest {

std::string Collada(const std::string& body, const std::string& version) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
         "<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" version=\"" +
         version + "\">\n<asset/>\n" + body + "\n</COLLADA>\n";
}

TempFile::TempFile(const std::string& contents, const std::string& suffix) {
  std::string pattern = "/tmp/zyltest-XXXXXX" + suffix;
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  int fd = mkstemps(name.data(), static_cast<int>(suffix.size()));
  if (fd < 0) throw std::runtime_error("cannot create a temporary file");
  close(fd);
  mPath = name.data();
  std::ofstream(mPath, std::ios::binary) << contents;
}

TempFile::~TempFile() { std::remove(mPath.c_str()); }

namespace {

std::string Slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

}  // namespace

void ExpectSceneInvariants(const zyldae::ReadResult& read, const InvariantChecks& checks) {
  if (!read.scene) return;
  for (const std::string& violation : SceneViolations(*read.scene, checks))
    ADD_FAILURE() << "scene invariant: " << violation;
}

zyldae::ReadSettings Complete() {
  zyldae::ReadSettings complete;
  complete.complete = true;
  return complete;
}

std::vector<zyldae::ReadSettings> BothModes() { return {zyldae::ReadSettings{}, Complete()}; }

zyldae::ReadResult ReadText(const std::string& document, const zyldae::ReadSettings& settings) {
  TempFile file(document);
  zyldae::ReadResult read = zyldae::ReadDocument(file.Path().c_str(), settings);
  ExpectSceneInvariants(read, ChecksFor(document, settings.complete));
  return read;
}

zyldae::ReadResult ReadPath(const std::string& path, const zyldae::ReadSettings& settings) {
  zyldae::ReadResult read = zyldae::ReadDocument(path.c_str(), settings);
  ExpectSceneInvariants(read, ChecksFor(Slurp(path), settings.complete));
  return read;
}

zyldae::Json DumpText(const std::string& document, bool brief, const zyldae::ReadSettings& settings) {
  zyldae::ReadResult read = ReadText(document, settings);
  // Written and parsed back, so that tests see exactly what the tool writes.
  std::ostringstream text;
  zyldae::WriteJson(text, zyldae::DumpRead(read, "document.dae", brief));
  return zyldae::Json::parse(text.str());
}

std::vector<std::string> Messages(const zyldae::ReadResult& read) {
  std::vector<std::string> texts;
  for (const auto& detail : read.notifications) texts.push_back(detail.text.Std());
  return texts;
}

int CountMessage(const zyldae::ReadResult& read, const std::string& text) {
  int count = 0;
  for (const auto& detail : read.notifications) count += detail.text.Std() == text ? 1 : 0;
  return count;
}

ToolRun RunTool(const std::string& arguments) { return RunCommand(std::string(ZYLDAE_PATH) + " " + arguments); }

ToolRun RunCommand(const std::string& commandLine) {
  TempFile out("", ".out");
  TempFile err("", ".err");
  std::string command = commandLine + " >" + out.Path() + " 2>" + err.Path();
  int raw = std::system(command.c_str());
  ToolRun run;
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  run.out = Slurp(out.Path());
  run.err = Slurp(err.Path());
  return run;
}

long PeakResidentKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

bool HasProgram(const std::string& name) { return RunCommand("command -v " + name).status == 0; }

TempFolder::TempFolder() {
  static int count = 0;
  mPath = (std::filesystem::temp_directory_path() /
           ("zyltest-" + std::to_string(::getpid()) + "-" + std::to_string(count++))).string();
  std::filesystem::create_directories(mPath);
}

TempFolder::~TempFolder() {
  std::error_code error;
  std::filesystem::remove_all(mPath, error);
}

}  // namespace zyltest
