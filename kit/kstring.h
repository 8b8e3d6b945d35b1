#pragma once
// KString: the kit's 8-bit byte string with value semantics.
//
// Text read from documents is UTF-8 and is kept byte for byte; the case operations
// (Upper, CompareNoCase) only touch the ASCII letters.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>

namespace zylsdk {

class KString {
 public:
  static constexpr int npos = -1;

  KString() = default;
  KString(const char* text) : mText(text ? text : "") {}
  KString(const char* text, size_t length) : mText(text ? std::string(text, length) : std::string()) {}
  KString(std::string text) : mText(std::move(text)) {}

  const char* Buffer() const { return mText.c_str(); }
  const char* c_str() const { return mText.c_str(); }
  const std::string& Std() const { return mText; }
  int GetLen() const { return static_cast<int>(mText.size()); }
  bool IsEmpty() const { return mText.empty(); }
  void Clear() { mText.clear(); }

  // Position of the first occurrence at or after `start`, or -1.
  int Find(char c, int start = 0) const;
  int Find(const char* text, int start = 0) const;
  // Position of the last occurrence, or -1.
  int ReverseFind(char c) const;

  // Substrings; out-of-range positions are clamped, so they never fail.
  KString Left(int count) const;
  KString Mid(int start, int count) const;
  KString Mid(int start) const;
  KString Right(int count) const;

  // Copy with the ASCII letters in upper case.
  KString Upper() const;
  // Case-insensitive comparison of the ASCII letters: <0, 0 or >0 like strcmp.
  int CompareNoCase(const char* other) const;

  // Replaces the first occurrence of `find` at or after `start` by `replacement`;
  // true when one was found.
  bool FindAndReplace(const char* find, const char* replacement, int start = 0);

  char operator[](int index) const { return mText[static_cast<size_t>(index)]; }

  KString& operator+=(const KString& other) { mText += other.mText; return *this; }
  KString& operator+=(const char* other) { if (other) mText += other; return *this; }
  KString& operator+=(char c) { mText += c; return *this; }
  // Appending an integer appends its decimal digits.
  template <class I, std::enable_if_t<std::is_integral_v<I> && !std::is_same_v<I, char> &&
                                          !std::is_same_v<I, bool>, int> = 0>
  KString& operator+=(I value) { mText += std::to_string(value); return *this; }

  friend bool operator==(const KString& a, const KString& b) { return a.mText == b.mText; }
  friend bool operator!=(const KString& a, const KString& b) { return a.mText != b.mText; }
  friend bool operator<(const KString& a, const KString& b) { return a.mText < b.mText; }
  friend bool operator==(const KString& a, const char* b) { return a.mText == (b ? b : ""); }
  friend bool operator!=(const KString& a, const char* b) { return !(a == b); }

 private:
  std::string mText;
};

inline KString operator+(KString a, const KString& b) { return a += b; }
inline KString operator+(KString a, const char* b) { return a += b; }
inline KString operator+(const char* a, const KString& b) { return KString(a) += b; }
inline KString operator+(KString a, char b) { return a += b; }
template <class I, std::enable_if_t<std::is_integral_v<I> && !std::is_same_v<I, char> &&
                                        !std::is_same_v<I, bool>, int> = 0>
inline KString operator+(KString a, I value) { return a += value; }

}  // namespace zylsdk

template <>
struct std::hash<zylsdk::KString> {
  size_t operator()(const zylsdk::KString& s) const noexcept { return std::hash<std::string>()(s.Std()); }
};
