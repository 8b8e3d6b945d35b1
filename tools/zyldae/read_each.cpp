#include "tools/zyldae/read_each.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "tools/zyldae/command.h"

namespace zyldae {
namespace {

const char* const kStandardInput = "-";

// Standard input copied into a temporary file, removed when the copy goes.
class StandardInputCopy {
 public:
  StandardInputCopy() {
    const char* folder = std::getenv("TMPDIR");
    std::string pattern = std::string(folder && *folder ? folder : "/tmp") + "/zyldae-stdin-XXXXXX";
    int descriptor = mkstemp(pattern.data());
    if (descriptor < 0) return;
    mPath = pattern;
    FILE* file = fdopen(descriptor, "wb");
    if (!file) {
      close(descriptor);
      return;
    }
    char buffer[1 << 16];
    bool written = true;
    for (size_t count; (count = std::fread(buffer, 1, sizeof buffer, stdin)) > 0;)
      written = written && std::fwrite(buffer, 1, count, file) == count;
    bool readAll = !std::ferror(stdin);
    bool closed = std::fclose(file) == 0;
    mCopied = written && readAll && closed;
  }
  ~StandardInputCopy() {
    if (!mPath.empty()) std::remove(mPath.c_str());
  }
  StandardInputCopy(const StandardInputCopy&) = delete;
  StandardInputCopy& operator=(const StandardInputCopy&) = delete;

  bool Copied() const { return mCopied; }
  const std::string& Path() const { return mPath; }

 private:
  std::string mPath;
  bool mCopied = false;
};

// Why `name` cannot be handed to the reader, or "" when it can.
std::string Unreadable(const std::string& name) {
  std::error_code error;
  if (std::filesystem::is_directory(name, error)) return name + " is a directory";
  return "";
}

}  // namespace

int ReadEach(const std::vector<std::string>& files, const ReadSettings& settings,
             const std::function<void(const std::string&, const ReadResult&)>& show, ReadTally& tally) {
  std::unique_ptr<StandardInputCopy> standardInput;
  int status = kExitOk;
  for (const std::string& name : files) {
    ++tally.files;
    std::string problem;
    std::string path = name;
    if (name == kStandardInput) {
      if (standardInput) {
        problem = "standard input can be read only once";
      } else {
        standardInput = std::make_unique<StandardInputCopy>();
        if (!standardInput->Copied()) problem = "cannot read standard input";
        path = standardInput->Path();
      }
    } else {
      problem = Unreadable(name);
    }
    ReadResult read;
    if (problem.empty()) {
      read = ReadDocument(path.c_str(), settings);
      if (!read.opened) problem = "cannot open " + name;
    }
    if (!problem.empty()) {
      std::cerr << "zyldae: " << problem << '\n';
      ++tally.unreadable;
      status = kExitUsage;
      continue;
    }
    show(name, read);
    if (read.ok) {
      ++tally.read;
    } else {
      ++tally.failed;
      if (status == kExitOk) status = kExitReadFailed;
    }
  }
  return status;
}

std::string TallyLine(const ReadTally& tally) {
  return std::to_string(tally.files) + (tally.files == 1 ? " file: " : " files: ") + std::to_string(tally.read) +
         " read, " + std::to_string(tally.failed) + " failed, " + std::to_string(tally.unreadable) + " unreadable";
}

}  // namespace zyldae
