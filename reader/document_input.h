#pragma once
// The bytes of a document file, read by the reader itself and handed to the XML parser piece
// by piece: the parser never opens files, so nothing is decompressed behind the reader's back.
//
// A gzip file is decompressed here, explicitly and within a bound: its output may reach
// max(floor, ratio x the compressed size) bytes and no more. Other compressed forms (xz, lzma)
// are refused. Either refusal comes with a message of its own. A .zae archive (a zip whose
// manifest.xml names the document) is opened when asked for, through libzip.

#include <cstdint>
#include <cstdio>
#include <memory>

#include "kit/kstring.h"
#include "kit/stream_options.h"

namespace zylsdk {

// How the reader takes a document's bytes. The limits let honest documents through (text
// compresses about 4 to 10 times; no COLLADA element has more than a few attributes) and stop a
// small file from unpacking to gigabytes or from keeping the parser busy for seconds.
struct InputLimits {
  int64_t ratio = 50;                  // unpacked bytes per compressed byte
  int64_t floorBytes = 64 << 20;       // always allowed, whatever the compressed size
  // The most attributes one element may have; a document with more is refused.
  int64_t maxAttributesPerElement = KZylStreamOptionsColladaReader::kDefaultAttributesPerElement;
  // Whether a zip file is opened as a .zae archive: the document its manifest.xml names as
  // <dae_root> is read, within the same bound. Otherwise a zip is handed to the parser as it is.
  bool zaeArchives = false;
  int64_t CapFor(int64_t compressedBytes) const;
};

class DocumentInput {
 public:
  // The file's input, or null when it cannot be opened or is refused; `refusal` then says why
  // (it stays empty for a file that cannot be opened).
  static std::unique_ptr<DocumentInput> Open(const KString& path, const InputLimits& limits,
                                             KString& refusal);
  virtual ~DocumentInput();

  // Fills `buffer` with up to `length` bytes; 0 at the end, -1 when reading fails or the
  // output passes its cap (Refusal() then says so).
  virtual int Read(char* buffer, int length) = 0;
  // The most bytes this input can give: what the parser's work is bounded by.
  virtual int64_t SizeBound() const = 0;
  const KString& Refusal() const { return mRefusal; }

 protected:
  explicit DocumentInput(FILE* file) : mFile(file) {}
  // Counts `count` more bytes of unpacked output: `count`, or -1 once the output passes `cap`
  // (Refusal() then says so).
  int CountOutput(int count, int64_t cap);
  FILE* mFile;
  KString mRefusal;
  int64_t mProduced = 0;
};

}  // namespace zylsdk
