#pragma once
// KZylUserNotification: where readers put the warnings and errors meant for the user.
// The kit prints nothing; the application reads the details and clears them.

#include <vector>

#include "kit/kstring.h"

namespace zylsdk {

class KZylUserNotification {
 public:
  struct Detail {
    int code;
    KString text;
  };

  void AddDetail(int code, const KString& text) { mDetails.push_back({code, text}); }
  int GetDetailCount() const { return static_cast<int>(mDetails.size()); }
  const Detail& GetDetail(int index) const { return mDetails[static_cast<size_t>(index)]; }
  const std::vector<Detail>& GetDetails() const { return mDetails; }
  void ClearDetails() { mDetails.clear(); }

 private:
  std::vector<Detail> mDetails;
};

}  // namespace zylsdk
