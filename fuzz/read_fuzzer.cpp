// libFuzzer target: any bytes, read as a document through the manager and the reader, as an
// application does it, in the mode the input asks for (see AsksForCompleteMode), then dumped.
// Nothing may crash, leak or trip a sanitizer, and the scene must keep its invariants: a broken
// one aborts, so that the input is kept as a finding.
//
// Half the mutations are libFuzzer's own byte changes, half structural changes of the XML
// (document_mutator.h), which reach far deeper into the reader than bytes alone.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>
#include <string>

#include "fuzz/document_mutator.h"
#include "tests/support/scene_invariants.h"
#include "tools/zyldae/read_file.h"
#include "tools/zyldae/scene_dump.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace {

// The reader reads files: each input goes to a file of this process in shared memory.
const std::string& InputPath() {
  static const std::string path = "/dev/shm/zylfuzz-" + std::to_string(getpid()) + ".dae";
  return path;
}

void AbortOnViolations(const zylsdk::KZylScene& scene, const std::string& document, bool complete) {
  const std::vector<std::string> violations = zyltest::SceneViolations(scene, zyltest::ChecksFor(document, complete));
  if (violations.empty()) return;
  std::fprintf(stderr, "scene invariants broken (%s mode):\n", complete ? "complete" : "default");
  for (const std::string& violation : violations) std::fprintf(stderr, "  %s\n", violation.c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FILE* file = std::fopen(InputPath().c_str(), "wb");
  if (!file) return 0;
  std::fwrite(data, 1, size, file);
  std::fclose(file);
  zyldae::ReadSettings settings;
  settings.complete = zylfuzz::AsksForCompleteMode(data, size);
  zyldae::ReadResult read = zyldae::ReadDocument(InputPath().c_str(), settings);
  if (read.scene) {
    AbortOnViolations(*read.scene, std::string(reinterpret_cast<const char*>(data), size), settings.complete);
    std::ostringstream out;
    zyldae::WriteJson(out, zyldae::DumpRead(read, "input.dae", false));
  }
  return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned int seed) {
  std::mt19937 random(seed);
  if (random() % 2 == 0) return LLVMFuzzerMutate(data, size, maxSize);
  std::string document(reinterpret_cast<const char*>(data), size);
  const bool changed = random() % 8 == 0 ? (zylfuzz::SwitchReadingMode(document), true)
                                         : zylfuzz::MutateStructure(document, random);
  if (!changed || document.size() > maxSize) return LLVMFuzzerMutate(data, size, maxSize);
  std::memcpy(data, document.data(), document.size());
  return document.size();
}
