#pragma once
// Reading the files named on the command line one after the other. "-" is standard input.

#include <functional>
#include <string>
#include <vector>

#include "tools/zyldae/read_file.h"

namespace zyldae {

// How the files of one call fared.
struct ReadTally {
  int files = 0;
  int read = 0;        // Read returned true
  int failed = 0;      // Read returned false
  int unreadable = 0;  // a directory, or a file that cannot be opened
};

// Reads each file in turn and hands each read to `show` with the file's name as given. A
// file that cannot be read gets one line on standard error instead. Standard input ("-") is
// copied once into a temporary file, because the reader reads files by path; it can be named
// only once. Returns the exit status: 2 when a file could not be read, else 1 when a read
// failed, else 0.
int ReadEach(const std::vector<std::string>& files, const ReadSettings& settings,
             const std::function<void(const std::string& name, const ReadResult& read)>& show, ReadTally& tally);

// "3 files: 1 read, 1 failed, 1 unreadable".
std::string TallyLine(const ReadTally& tally);

}  // namespace zyldae
