#pragma once
// KZylReader: the base of the kit's file readers. An application gets a reader from the
// manager, opens a file, may ask for read options, reads into a scene and closes the file.

#include "kit/kerror.h"
#include "kit/kstring.h"
#include "kit/kstringlist.h"

namespace zylsdk {

class KZylSdkManager;
class KZylScene;
class KZylStreamOptions;

class KZylReader {
 public:
  explicit KZylReader(KZylSdkManager& manager) : mManager(&manager) {}
  virtual ~KZylReader() = default;
  KZylReader(const KZylReader&) = delete;
  KZylReader& operator=(const KZylReader&) = delete;

  // The version of the reader.
  virtual void GetVersion(int& major, int& minor, int& revision) const;

  // Opens a file to read; false (last error 3) when it cannot be opened.
  virtual bool FileOpen(const char* fileName) = 0;
  // Closes the open file; false when none is open or closing failed.
  virtual bool FileClose() = 0;
  virtual bool IsFileOpen() = 0;
  // Options for the next read; the caller owns them (they belong to the manager). Null when no
  // file is open.
  virtual class KZylStreamOptions* GetReadOptions(bool parseFile = true) = 0;
  // Reads the open file into `scene`; false when the file could not be read.
  virtual bool Read(KZylScene& scene, KZylStreamOptions* options) = 0;

  // Collects, in `duplicates`, each name that more than one node of the scene carries (in
  // the order of first appearance); true when there is none.
  virtual bool CheckDuplicateNodeNames(const KZylScene& scene, KStringList& duplicates) const;

  KZylSdkManager* GetZylSdkManager() const { return mManager; }
  KError& GetError() { return mError; }
  const KError& GetError() const { return mError; }
  int GetLastErrorID() const { return mError.GetLastErrorID(); }
  const KString& GetLastErrorString() const { return mError.GetLastErrorString(); }
  // Every error text the reader has accumulated.
  const KString& GetErrorText() const { return mErrorText; }

 protected:
  KZylSdkManager* mManager;
  KError mError;
  KString mErrorText;
};

}  // namespace zylsdk
