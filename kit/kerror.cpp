#include "kit/kerror.h"

namespace zylsdk {

void KError::SetLastErrorID(int id) {
  mId = id;
  switch (id) {
    case eNoError: mText = ""; break;
    case eFileNotOpened: mText = "File not opened"; break;
    case eInvalidReadOptions: mText = "Invalid read options"; break;
    default: mText = KString("Error ") + id; break;
  }
}

}  // namespace zylsdk
