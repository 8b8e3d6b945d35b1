#include "reader/document_input.h"

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "reader/zae_input.h"

namespace zylsdk {
namespace {

constexpr size_t kReadStep = 256 * 1024;

constexpr unsigned char kGzipMagic[] = {0x1f, 0x8b};
constexpr unsigned char kXzMagic[] = {0xfd, '7', 'z', 'X', 'Z', 0x00};
// An lzma ("alone") stream starts with its properties byte, nearly always 0x5d, then a
// dictionary size whose low bytes are 0. No XML text can start this way.
constexpr unsigned char kLzmaMagic[] = {0x5d, 0x00, 0x00};

template <size_t N>
bool StartsWith(const unsigned char* bytes, size_t count, const unsigned char (&magic)[N]) {
  return count >= N && std::memcmp(bytes, magic, N) == 0;
}

int64_t FileSize(FILE* file) {
  if (std::fseek(file, 0, SEEK_END) != 0) return -1;
  const long size = std::ftell(file);
  std::rewind(file);
  return size;
}

class PlainInput : public DocumentInput {
 public:
  PlainInput(FILE* file, int64_t size) : DocumentInput(file), mSize(size), mStep(kReadStep) {}
  // The parser asks for a few kilobytes at a time; the file is read in larger steps, with far
  // fewer calls to the system (a 90 MB document took 23,000 of them).
  int Read(char* buffer, int length) override {
    if (mAt == mEnd) {
      const size_t read = std::fread(mStep.data(), 1, mStep.size(), mFile);
      if (read == 0) return std::ferror(mFile) ? -1 : 0;
      mAt = 0;
      mEnd = read;
    }
    const size_t count = std::min(mEnd - mAt, static_cast<size_t>(std::max(0, length)));
    std::memcpy(buffer, mStep.data() + mAt, count);
    mAt += count;
    return static_cast<int>(count);
  }
  int64_t SizeBound() const override { return mSize; }

 private:
  int64_t mSize;
  std::vector<char> mStep;
  size_t mAt = 0;
  size_t mEnd = 0;
};

class GzipInput : public DocumentInput {
 public:
  GzipInput(FILE* file, int64_t cap) : DocumentInput(file), mCap(cap) {
    // 16 + window bits: a gzip header and trailer around the deflate data.
    mReady = inflateInit2(&mStream, 16 + MAX_WBITS) == Z_OK;
  }
  ~GzipInput() override {
    if (mReady) inflateEnd(&mStream);
  }
  int Read(char* buffer, int length) override;
  int64_t SizeBound() const override { return mCap; }

 private:
  // Refills the compressed bytes when they are used up; false at the end of the file.
  bool Refill();

  z_stream mStream{};
  bool mReady = false;
  bool mEnded = false;
  int64_t mCap;
  unsigned char mCompressed[64 * 1024];
};

bool GzipInput::Refill() {
  if (mStream.avail_in > 0) return true;
  const size_t read = std::fread(mCompressed, 1, sizeof mCompressed, mFile);
  mStream.next_in = mCompressed;
  mStream.avail_in = static_cast<uInt>(read);
  return read > 0;
}

int GzipInput::Read(char* buffer, int length) {
  if (!mReady || !mRefusal.IsEmpty()) return -1;
  mStream.next_out = reinterpret_cast<Bytef*>(buffer);
  mStream.avail_out = static_cast<uInt>(length);
  while (mStream.avail_out > 0 && !mEnded) {
    if (!Refill()) break;  // a cut file: what was unpacked is all there is
    const int status = inflate(&mStream, Z_NO_FLUSH);
    if (status == Z_STREAM_END) {
      // Several gzip members follow one another; anything else after a member is ignored.
      mEnded = !Refill() || !StartsWith(mStream.next_in, mStream.avail_in, kGzipMagic) ||
               inflateReset(&mStream) != Z_OK;
    } else if (status != Z_OK && !(status == Z_BUF_ERROR && mStream.avail_in == 0)) {
      return -1;  // corrupt data, or no progress possible
    }
  }
  return CountOutput(length - static_cast<int>(mStream.avail_out), mCap);
}

}  // namespace

int64_t InputLimits::CapFor(int64_t compressedBytes) const {
  const int64_t scaled = compressedBytes > INT64_MAX / std::max<int64_t>(1, ratio) ? INT64_MAX
                                                                                   : compressedBytes * ratio;
  return std::max(floorBytes, scaled);
}

DocumentInput::~DocumentInput() { std::fclose(mFile); }

int DocumentInput::CountOutput(int count, int64_t cap) {
  mProduced += count;
  if (mProduced <= cap) return count;
  mRefusal = KString("the compressed document unpacks to more than ") + KString(std::to_string(cap)) +
             " bytes, the limit for its size";
  return -1;
}

std::unique_ptr<DocumentInput> DocumentInput::Open(const KString& path, const InputLimits& limits,
                                                   KString& refusal) {
  FILE* file = std::fopen(path.Buffer(), "rb");
  if (!file) return nullptr;
  const int64_t size = FileSize(file);
  unsigned char start[6] = {};
  const size_t count = std::fread(start, 1, sizeof start, file);
  std::rewind(file);
  if (StartsWith(start, count, kXzMagic) || StartsWith(start, count, kLzmaMagic)) {
    refusal = "the document is compressed with xz or lzma, which is not read";
    std::fclose(file);
    return nullptr;
  }
  const int64_t cap = limits.CapFor(std::max<int64_t>(0, size));
  if (StartsWith(start, count, kGzipMagic)) return std::make_unique<GzipInput>(file, cap);
  if (limits.zaeArchives && StartsAsZip(start, count)) return OpenZaeDocument(file, path, cap, refusal);
  return std::make_unique<PlainInput>(file, std::max<int64_t>(0, size));
}

}  // namespace zylsdk
