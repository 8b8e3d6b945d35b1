#pragma once
// A reader fixture that also writes documents to files, for tests of the whole read entry
// (FileOpen, GetReadOptions, Read, FileClose) on one reader.

#include <memory>
#include <string>
#include <vector>

#include "tests/support/documents.h"
#include "tests/support/reader_fixture.h"

namespace zyltest {

class ReaderFileTest : public ReaderTest {
 protected:
  // Writes `document` to a new temporary file and gives its path.
  const std::string& Write(const std::string& document) {
    mFiles.push_back(std::make_unique<TempFile>(document));
    return mFiles.back()->Path();
  }
  // Writes `document` and opens it with the reader.
  bool Open(const std::string& document) { return reader->FileOpen(Write(document).c_str()); }
  // Fresh read options, as GetReadOptions would make them.
  zylsdk::KZylStreamOptions* Options() { return zylsdk::KZylStreamOptionsColladaReader::Create(&manager, ""); }
  // Opens `document` and reads it into `target` (the fixture's scene by default).
  bool OpenAndRead(const std::string& document, zylsdk::KZylScene* target = nullptr) {
    if (!Open(document)) {
      ADD_FAILURE() << "FileOpen refused the test's document";
      return false;
    }
    return reader->Read(target ? *target : *scene, Options());
  }

 private:
  std::vector<std::unique_ptr<TempFile>> mFiles;
};

// A document whose asset holds `assetChildren`, followed by `body`.
inline std::string ColladaWithAsset(const std::string& assetChildren, const std::string& body = "") {
  std::string document = Collada(body);
  return document.replace(document.find("<asset/>"), 8, "<asset>" + assetChildren + "</asset>");
}

// The notification text of the failure of a read.
inline const char* ParseFailure() { return "ERROR: Unable to parse xml/dae file\n"; }

}  // namespace zyltest
