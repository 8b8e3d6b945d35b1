#pragma once
// `zyldae info`: a read printed for a person. The layout is for reading, not parsing.

#include <ostream>

#include "tools/zyldae/read_file.h"

namespace zyldae {

void PrintInfo(std::ostream& out, const ReadResult& read, const zylsdk::KString& file);

}  // namespace zyldae
