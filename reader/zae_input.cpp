#include "reader/zae_input.h"

#include <zip.h>

#include <cstring>
#include <string>

namespace zylsdk {
namespace {

constexpr unsigned char kZipMagic[] = {'P', 'K', 0x03, 0x04};
// A manifest is a few lines; a larger one is not read.
constexpr zip_uint64_t kLargestManifest = 64 * 1024;

struct ArchiveCloser {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
using ArchivePtr = std::unique_ptr<zip_t, ArchiveCloser>;

class ZaeInput : public DocumentInput {
 public:
  ZaeInput(FILE* file, ArchivePtr archive, zip_file_t* entry, int64_t cap)
      : DocumentInput(file), mArchive(std::move(archive)), mEntry(entry), mCap(cap) {}
  ~ZaeInput() override { zip_fclose(mEntry); }
  int Read(char* buffer, int length) override {
    if (!mRefusal.IsEmpty()) return -1;
    const zip_int64_t read = zip_fread(mEntry, buffer, static_cast<zip_uint64_t>(length));
    return read < 0 ? -1 : CountOutput(static_cast<int>(read), mCap);
  }
  int64_t SizeBound() const override { return mCap; }

 private:
  ArchivePtr mArchive;
  zip_file_t* mEntry;
  int64_t mCap;
};

// The whole of a small entry; false when it is missing, larger than `largest` or unreadable.
bool ReadSmallEntry(zip_t* archive, const char* name, zip_uint64_t largest, std::string& text) {
  zip_stat_t stat;
  zip_stat_init(&stat);
  if (zip_stat(archive, name, 0, &stat) != 0 || !(stat.valid & ZIP_STAT_SIZE) || stat.size > largest) return false;
  zip_file_t* entry = zip_fopen(archive, name, 0);
  if (!entry) return false;
  text.resize(static_cast<size_t>(stat.size));
  const zip_int64_t read = zip_fread(entry, text.data(), stat.size);
  zip_fclose(entry);
  return read == static_cast<zip_int64_t>(stat.size);
}

// The entry name that the manifest's <dae_root> gives ("./scene.dae" names "scene.dae");
// empty when there is none.
std::string DaeRoot(const std::string& manifest) {
  const size_t open = manifest.find("<dae_root>");
  const size_t close = open == std::string::npos ? open : manifest.find("</dae_root>", open);
  if (close == std::string::npos) return "";
  std::string root = manifest.substr(open + 10, close - open - 10);
  const size_t first = root.find_first_not_of(" \t\r\n");
  const size_t last = root.find_last_not_of(" \t\r\n");
  root = first == std::string::npos ? "" : root.substr(first, last - first + 1);
  while (root.compare(0, 2, "./") == 0) root.erase(0, 2);
  return root;
}

}  // namespace

bool StartsAsZip(const unsigned char* bytes, size_t count) {
  return count >= sizeof kZipMagic && std::memcmp(bytes, kZipMagic, sizeof kZipMagic) == 0;
}

std::unique_ptr<DocumentInput> OpenZaeDocument(FILE* file, const KString& path, int64_t cap, KString& refusal) {
  int error = 0;
  ArchivePtr archive(zip_open(path.Buffer(), ZIP_RDONLY, &error));
  std::string manifest;
  std::string root;
  if (!archive) {
    refusal = "the zip archive cannot be read";
  } else if (!ReadSmallEntry(archive.get(), "manifest.xml", kLargestManifest, manifest)) {
    refusal = "the zip archive has no manifest.xml: it is not a .zae document";
  } else if ((root = DaeRoot(manifest)).empty()) {
    refusal = "the .zae manifest names no <dae_root>";
  } else if (zip_file_t* entry = zip_fopen(archive.get(), root.c_str(), 0)) {
    return std::make_unique<ZaeInput>(file, std::move(archive), entry, cap);
  } else {
    refusal = KString("the .zae document ") + KString(root.c_str()) + " is not in the archive";
  }
  std::fclose(file);
  return nullptr;
}

}  // namespace zylsdk
