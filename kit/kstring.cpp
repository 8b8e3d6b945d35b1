#include "kit/kstring.h"

#include <algorithm>
#include <cstring>

namespace zylsdk {
namespace {

char AsciiUpper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

size_t ClampStart(int start, size_t length) {
  if (start < 0) return 0;
  return std::min(static_cast<size_t>(start), length);
}

}  // namespace

int KString::Find(char c, int start) const {
  size_t at = mText.find(c, ClampStart(start, mText.size()));
  return at == std::string::npos ? npos : static_cast<int>(at);
}

int KString::Find(const char* text, int start) const {
  if (!text) return npos;
  size_t at = mText.find(text, ClampStart(start, mText.size()));
  return at == std::string::npos ? npos : static_cast<int>(at);
}

int KString::ReverseFind(char c) const {
  size_t at = mText.rfind(c);
  return at == std::string::npos ? npos : static_cast<int>(at);
}

KString KString::Left(int count) const {
  if (count <= 0) return KString();
  return KString(mText.substr(0, static_cast<size_t>(count)));
}

KString KString::Mid(int start, int count) const {
  size_t from = ClampStart(start, mText.size());
  if (count <= 0) return KString();
  return KString(mText.substr(from, static_cast<size_t>(count)));
}

KString KString::Mid(int start) const { return KString(mText.substr(ClampStart(start, mText.size()))); }

KString KString::Right(int count) const {
  if (count <= 0) return KString();
  size_t n = std::min(static_cast<size_t>(count), mText.size());
  return KString(mText.substr(mText.size() - n));
}

KString KString::Upper() const {
  std::string upper = mText;
  std::transform(upper.begin(), upper.end(), upper.begin(), AsciiUpper);
  return KString(std::move(upper));
}

int KString::CompareNoCase(const char* other) const {
  const char* a = mText.c_str();
  const char* b = other ? other : "";
  size_t length = mText.size();
  size_t i = 0;
  for (; i < length && b[i] != '\0'; ++i) {
    unsigned char ca = static_cast<unsigned char>(AsciiUpper(a[i]));
    unsigned char cb = static_cast<unsigned char>(AsciiUpper(b[i]));
    if (ca != cb) return ca < cb ? -1 : 1;
  }
  if (i < length) return 1;
  return b[i] == '\0' ? 0 : -1;
}

bool KString::FindAndReplace(const char* find, const char* replacement, int start) {
  if (!find || !*find) return false;
  size_t at = mText.find(find, ClampStart(start, mText.size()));
  if (at == std::string::npos) return false;
  mText.replace(at, std::strlen(find), replacement ? replacement : "");
  return true;
}

}  // namespace zylsdk
