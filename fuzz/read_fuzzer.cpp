// libFuzzer target: any bytes, read as a document through the manager and the reader, as an
// application does it, then dumped. Nothing may crash, leak or trip a sanitizer.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <sstream>
#include <string>

#include "tools/zyldae/read_file.h"
#include "tools/zyldae/scene_dump.h"

namespace {

// The reader reads files: each input goes to a file of this process in shared memory.
const std::string& InputPath() {
  static const std::string path = "/dev/shm/zylfuzz-" + std::to_string(getpid()) + ".dae";
  return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FILE* file = std::fopen(InputPath().c_str(), "wb");
  if (!file) return 0;
  std::fwrite(data, 1, size, file);
  std::fclose(file);
  zyldae::ReadResult read = zyldae::ReadDocument(InputPath().c_str());
  if (read.scene) {
    std::ostringstream out;
    zyldae::WriteJson(out, zyldae::DumpRead(read, "input.dae", false));
  }
  return 0;
}
