#pragma once
// KError: the last error of an object, an id with its text.

#include "kit/kstring.h"

namespace zylsdk {

class KError {
 public:
  // Error ids of the readers.
  enum { eNoError = 0, eFileNotOpened = 3, eInvalidReadOptions = 6 };

  void SetLastError(int id, const KString& text) { mId = id; mText = text; }
  // Sets the id with the kit's own text for it.
  void SetLastErrorID(int id);
  int GetLastErrorID() const { return mId; }
  const KString& GetLastErrorString() const { return mText; }
  void Clear() { mId = eNoError; mText.Clear(); }

 private:
  int mId = eNoError;
  KString mText;
};

}  // namespace zylsdk
