#pragma once
// KZylUserNotification: where readers put the warnings and errors meant for the user.
// The kit prints nothing; the application reads the details and clears them.

#include <vector>

#include "kit/kstring.h"

namespace zylsdk {

class KZylUserNotification {
 public:
  // Where in the document a detail arose: the line where the element being read starts (0
  // when the detail belongs to no element, for example a file that cannot be parsed has only
  // the parser's line) and the id, or else the name, of the nearest element around it that
  // has one ("" when none has).
  struct Location {
    int line = 0;
    KString element;
  };

  struct Detail {
    int code;
    KString text;
    Location location;
  };

  void AddDetail(int code, const KString& text) { AddDetail(code, text, Location()); }
  void AddDetail(int code, const KString& text, const Location& location) {
    mDetails.push_back({code, text, location});
  }
  int GetDetailCount() const { return static_cast<int>(mDetails.size()); }
  const Detail& GetDetail(int index) const { return mDetails[static_cast<size_t>(index)]; }
  const std::vector<Detail>& GetDetails() const { return mDetails; }
  void ClearDetails() { mDetails.clear(); }

 private:
  std::vector<Detail> mDetails;
};

}  // namespace zylsdk
