#include "reader/dom/numbers.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <climits>
#include <cmath>
#include <cstring>

#include <fast_float/fast_float.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zylsdk {
namespace {

// Past this magnitude an integer no longer fits an int (it is -INT_MIN).
constexpr uint64_t kSaturated = static_cast<uint64_t>(INT_MAX) + 1;

bool IsSeparator(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v' || c == ','; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsWordSeparator(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

const char* SkipSeparators(const char* p) {
  while (IsSeparator(*p)) ++p;
  return p;
}

bool StartsWithNoCase(const char* p, const char* word) {
  for (; *word; ++p, ++word)
    if (*p == '\0' || (*p | 0x20) != *word) return false;
  return true;
}

// End of the characters at `p` that can form one floating-point number: a sign, then "inf",
// "infinity", "nan" (with an optional "(chars)"), or digits with at most one point followed by
// an exponent. The scan never goes further than the number itself (plus the sign and the point
// of a failed start), so a text of any content is read in time proportional to its length.
const char* DoubleExtent(const char* p) {
  const char* q = p;
  if (*q == '+' || *q == '-') ++q;
  if (StartsWithNoCase(q, "infinity")) return q + 8;
  if (StartsWithNoCase(q, "inf")) return q + 3;
  if (StartsWithNoCase(q, "nan")) {
    q += 3;
    if (*q != '(') return q;
    const char* close = q + 1;
    while (IsDigit(*close) || ((*close | 0x20) >= 'a' && (*close | 0x20) <= 'z') || *close == '_') ++close;
    return *close == ')' ? close + 1 : q;
  }
  bool digits = false;
  for (; IsDigit(*q); ++q) digits = true;
  if (*q == '.')
    for (++q; IsDigit(*q); ++q) digits = true;
  if (!digits) return q;
  if (*q == 'e' || *q == 'E') {
    const char* exponent = q + 1;
    if (*exponent == '+' || *exponent == '-') ++exponent;
    if (IsDigit(*exponent)) {
      q = exponent;
      while (IsDigit(*q)) ++q;
    }
  }
  return q;
}

// Whether a decimal number that a double cannot hold is too large (rather than too small):
// the position of its first significant digit plus its exponent tells.
bool TooLarge(const char* first, const char* last) {
  const char* c = first;
  if (c < last && (*c == '+' || *c == '-')) ++c;
  long long magnitude = 0;
  bool significant = false;
  for (; c < last && IsDigit(*c); ++c) {
    significant = significant || *c != '0';
    if (significant) ++magnitude;
  }
  if (c < last && *c == '.') {
    for (++c; c < last && IsDigit(*c); ++c) {
      if (!significant && *c == '0') --magnitude;
      significant = significant || *c != '0';
    }
  }
  long long exponent = 0;
  if (c < last && (*c == 'e' || *c == 'E')) {
    ++c;
    bool negative = c < last && *c == '-';
    if (c < last && (*c == '+' || *c == '-')) ++c;
    for (; c < last && IsDigit(*c); ++c) exponent = exponent < 1000000000 ? exponent * 10 + (*c - '0') : exponent;
    if (negative) exponent = -exponent;
  }
  return magnitude + exponent > 0;
}

// Exact powers of ten: a plain decimal has at most kPlainDigits digits after its point.
constexpr int kPlainDigits = 15;
constexpr double kPowersOfTen[kPlainDigits + 1] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                  1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// Most numbers in documents are plain decimals: an optional '-', at most 15 digits with at most
// one point among them, no exponent. Such a number is an integer below 2^53 divided by an exact
// power of ten, and one division of two exact doubles rounds correctly: the double that
// fast_float (and std::from_chars) gives, found in a few steps. The end of the number, or null
// when the text at `p` is anything else (the general conversion then reads it). `inText(q)`
// tells whether q is still inside the text; a NUL-terminated text stops the scan by itself.
template <class InText>
const char* ParsePlainDecimal(const char* p, InText inText, double& value) {
  const char* q = p;
  const bool negative = inText(q) && *q == '-';
  if (negative) ++q;
  uint64_t mantissa = 0;
  int digits = 0;
  int fractionDigits = 0;
  bool point = false;
  for (; inText(q); ++q) {
    if (IsDigit(*q)) {
      if (++digits > kPlainDigits) return nullptr;
      mantissa = mantissa * 10 + static_cast<uint64_t>(*q - '0');
      fractionDigits += point;
    } else if (*q == '.' && !point) {
      point = true;
    } else {
      break;
    }
  }
  if (digits == 0 || (inText(q) && (*q == 'e' || *q == 'E'))) return nullptr;
  // Below 10^15, the mantissa converts as a signed integer: one instruction, where an unsigned
  // one needs a test of its top bit.
  value = static_cast<double>(static_cast<int64_t>(mantissa)) / kPowersOfTen[fractionDigits];
  if (negative) value = -value;
  return q;
}

// Where a number at `p` starts once a leading '+' is passed over ("+-1" and "++1" are not
// numbers); `inText(q)` as for ParsePlainDecimal.
template <class InText>
const char* AfterPlus(const char* p, InText inText) {
  return (*p == '+' && inText(p + 1) && p[1] != '+' && p[1] != '-') ? p + 1 : p;
}

// Converts any number at `first` (a '+' already passed over), reading no further than `end`.
// fast_float reads what std::from_chars reads, to the same double, in fewer steps; some of its
// versions give an out-of-range number as infinity or zero at once, others report it as
// std::from_chars does.
const char* ParseGeneralNumber(const char* first, const char* end, double& value) {
  const fast_float::from_chars_result result = fast_float::from_chars(first, end, value, fast_float::chars_format::general);
  if (result.ec == std::errc::invalid_argument) return nullptr;
  if (result.ec == std::errc::result_out_of_range) {
    // Too large or too small for a double: the number still counts, as infinity or zero.
    bool negative = *first == '-';
    value = TooLarge(first, result.ptr) ? (negative ? -HUGE_VAL : HUGE_VAL) : (negative ? -0.0 : 0.0);
  }
  return result.ptr;
}

// Parses a floating-point number at `p`, reading no further than `end` (a leading '+'
// accepted); the end of what was read, or null when no number starts there.
const char* ParseDoubleBefore(const char* p, const char* end, double& value) {
  const auto inText = [end](const char* q) { return q < end; };
  const char* first = AfterPlus(p, inText);
  if (const char* plainEnd = ParsePlainDecimal(first, inText, value)) return plainEnd;
  return ParseGeneralNumber(first, end, value);
}

// The same where the end of the text is not known: the number's own extent bounds the read.
const char* ParseDouble(const char* p, double& value) {
  const auto inText = [](const char*) { return true; };  // the terminating NUL ends every scan
  const char* first = AfterPlus(p, inText);
  if (const char* plainEnd = ParsePlainDecimal(first, inText, value)) return plainEnd;
  return ParseGeneralNumber(first, DoubleExtent(p), value);
}

// Parses an integer at `p`, saturating; null when no integer starts there.
const char* ParseInt(const char* p, int& value) {
  // A sign and digits: nothing further can belong to the integer.
  const char* end = (*p == '+' || *p == '-') ? p + 1 : p;
  while (IsDigit(*end)) ++end;
  const char* first = (*p == '+' && IsDigit(p[1])) ? p + 1 : p;
  long long wide = 0;
  std::from_chars_result result = std::from_chars(first, end, wide);
  if (result.ec == std::errc::invalid_argument) return nullptr;
  if (result.ec == std::errc::result_out_of_range) wide = *first == '-' ? LLONG_MIN : LLONG_MAX;
  value = wide > INT_MAX ? INT_MAX : (wide < INT_MIN ? INT_MIN : static_cast<int>(wide));
  return result.ptr;
}

// The int of that magnitude and sign, or the nearest end of the int range.
int SaturatedInt(uint64_t magnitude, bool negative) {
  if (negative) return magnitude >= kSaturated ? INT_MIN : -static_cast<int>(magnitude);
  return magnitude > static_cast<uint64_t>(INT_MAX) ? INT_MAX : static_cast<int>(magnitude);
}

// The digits at `p` (at least one) as a magnitude that stops growing once it is past the int
// range, so that the value saturates; the end of the digits.
const char* ReadMagnitudeDigitByDigit(const char* p, const char* end, uint64_t& magnitude) {
  magnitude = 0;
  for (; p < end && IsDigit(*p); ++p)
    if (magnitude <= kSaturated) magnitude = magnitude * 10 + static_cast<uint64_t>(*p - '0');
  return p;
}

#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
#define ZYL_READS_DIGITS_BY_WORD 1

// The digits at `p` as one little-endian word with '0' taken from every byte.
uint64_t DigitValuesAt(const char* p) {
  uint64_t word;
  std::memcpy(&word, p, sizeof word);
  return word - 0x3030303030303030u;
}

// The number written by the first `digits` (1 to 8) bytes of `values`: shifted to the top, so
// that zeros lead them, and combined by pairs of digits, then of pairs, then of quadruples.
uint32_t NumberOfDigits(uint64_t values, int digits) {
  uint64_t v = values << (8 * (8 - digits));
  v = v * 10 + (v >> 8);
  v = ((v & 0x000000FF000000FFu) * (100 + (1000000ull << 32)) +
       ((v >> 16) & 0x000000FF000000FFu) * (1 + (10000ull << 32))) >> 32;
  return static_cast<uint32_t>(v);
}
#endif

// The same, eight characters at a time where eight remain: index lists hold millions of short
// integers, and a loop that stops at a length it cannot predict costs more than the digits.
const char* ReadMagnitude(const char* p, const char* end, uint64_t& magnitude) {
#if defined(ZYL_READS_DIGITS_BY_WORD)
  if (end - p >= 8) {
    const uint64_t values = DigitValuesAt(p);
    // A byte's top bit is set when it is not a digit (below '0' it wrapped, above '9' adding
    // 0x76 reaches 0x80); borrows and carries only cross into bytes after a non-digit.
    const uint64_t nonDigits = (values | (values + 0x7676767676767676u)) & 0x8080808080808080u;
    if (nonDigits != 0) {
      const int digits = __builtin_ctzll(nonDigits) / 8;  // at least one: *p is a digit
      magnitude = NumberOfDigits(values, digits);
      return p + digits;
    }
  }
#endif
  return ReadMagnitudeDigitByDigit(p, end, magnitude);
}

// Appends the integer at `p` (a sign directly before digits, then the digits), or passes over
// one character that cannot start one; where the reading goes on.
const char* AppendIntOrPass(const char* p, const char* end, std::vector<int>& out) {
  const bool negative = *p == '-';
  const bool sign = negative || *p == '+';
  const char* first = sign ? p + 1 : p;
  if (first == end || !IsDigit(*first)) return p + 1;
  uint64_t magnitude = 0;
  p = ReadMagnitude(first, end, magnitude);
  out.push_back(SaturatedInt(magnitude, negative));
  return p;
}

#if defined(__SSE2__) && defined(ZYL_READS_DIGITS_BY_WORD)
#define ZYL_READS_INTS_BY_WINDOW 1
constexpr size_t kWindow = 64;

// Which of the 64 bytes at `p` are digits, and which are signs, one bit per byte.
void ClassifyWindow(const char* p, uint64_t& digits, uint64_t& signs) {
  digits = 0;
  signs = 0;
  for (size_t block = 0; block < kWindow / 16; ++block) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * block));
    const __m128i digit = _mm_and_si128(_mm_cmpgt_epi8(bytes, _mm_set1_epi8('0' - 1)),
                                        _mm_cmplt_epi8(bytes, _mm_set1_epi8('9' + 1)));
    const __m128i sign = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('-')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('+')));
    digits |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(digit))) << (16 * block);
    signs |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(sign))) << (16 * block);
  }
}

// Appends the integers of the window at `p` when it holds no sign: each run of digits is one,
// found from the window's bit masks rather than byte by byte, so that finding the next number
// never waits for the last one. `p` starts a run or is not a digit, and 8 bytes beyond the
// window are readable. A run that reaches the window's end is left to the next window, which
// starts with it; null when the window holds a sign or is one run, for the reading by number.
const char* AppendIntsOfWindow(const char* p, std::vector<int>& out) {
  uint64_t digits, signs;
  ClassifyWindow(p, digits, signs);
  if (signs != 0) return nullptr;
  uint64_t starts = digits & ~(digits << 1);
  uint64_t ends = digits & ~(digits >> 1);
  const char* next = p + kWindow;
  if (digits >> 63) {
    const int lastStart = 63 - __builtin_clzll(starts);
    if (lastStart == 0) return nullptr;
    starts &= ~(uint64_t{1} << lastStart);
    ends &= ~(uint64_t{1} << 63);
    next = p + lastStart;
  }
  while (starts != 0) {
    const int start = __builtin_ctzll(starts);
    const int length = __builtin_ctzll(ends) - start + 1;
    starts &= starts - 1;
    ends &= ends - 1;
    uint64_t magnitude;
    if (length <= 8)
      magnitude = NumberOfDigits(DigitValuesAt(p + start), length);
    else
      ReadMagnitudeDigitByDigit(p + start, p + start + length, magnitude);
    out.push_back(SaturatedInt(magnitude, false));
  }
  return next;
}
#endif

}  // namespace

bool NumberReader::Next(double& value) {
  const char* p = SkipSeparators(mCursor);
  while (*p) {
    if (const char* end = ParseDouble(p, value)) {
      mCursor = SkipSeparators(end);
      return true;
    }
    p = SkipSeparators(p + 1);
  }
  mCursor = p;
  return false;
}

bool NumberReader::NextInt(int& value) {
  const char* p = SkipSeparators(mCursor);
  while (*p) {
    if (const char* end = ParseInt(p, value)) {
      mCursor = SkipSeparators(end);
      return true;
    }
    p = SkipSeparators(p + 1);
  }
  mCursor = p;
  return false;
}

double strtodouble(const char** cursor) {
  if (!cursor || !*cursor) return 0.0;
  NumberReader reader(*cursor);
  double value = 0.0;
  if (!reader.Next(value)) value = 0.0;
  *cursor = reader.Cursor();
  return value;
}

int strtoint(const char** cursor) {
  if (!cursor || !*cursor) return 0;
  NumberReader reader(*cursor);
  int value = 0;
  if (!reader.NextInt(value)) value = 0;
  *cursor = reader.Cursor();
  return value;
}

void AppendInts(const char* begin, const char* end, std::vector<int>& out) {
  const char* p = begin;
#if defined(ZYL_READS_INTS_BY_WINDOW)
  // Whole windows first, while a window and a word after it remain; a window with a sign is read
  // number by number (which ends, like a window, at the start of a run or at a non-digit).
  while (static_cast<size_t>(end - p) >= kWindow + 8) {
    if (const char* next = AppendIntsOfWindow(p, out)) {
      p = next;
      continue;
    }
    for (const char* stop = p + kWindow; p < stop;) p = AppendIntOrPass(p, end, out);
  }
#endif
  while (p < end) p = AppendIntOrPass(p, end, out);
}

void strtoints(const char* text, KArrayTemplate<int>& out) {
  if (text) AppendInts(text, text + std::strlen(text), out.Std());
}

void AppendDoubles(const char* begin, const char* end, std::vector<double>& out) {
  const char* p = begin;
  double value;
  for (;;) {
    while (p < end && IsSeparator(*p)) ++p;
    if (p == end) return;
    if (const char* next = ParseDoubleBefore(p, end, value)) {
      out.push_back(value);
      p = next;
    } else {
      ++p;  // a character that cannot start a number
    }
  }
}

void AppendWords(const char* begin, const char* end, std::vector<KString>& out) {
  const char* p = begin;
  while (p < end) {
    while (p < end && IsWordSeparator(*p)) ++p;
    const char* start = p;
    while (p < end && !IsWordSeparator(*p)) ++p;
    if (p > start) out.emplace_back(start, static_cast<size_t>(p - start));
  }
}

KZylColor strtocolor(const char* text) {
  NumberReader reader(text);
  KZylColor color(0.0, 0.0, 0.0, 1.0);
  reader.Next(color.mRed);
  reader.Next(color.mGreen);
  reader.Next(color.mBlue);
  reader.Next(color.mAlpha);
  return color;
}

void strtomatrix(const char*& cursor, KZylXMatrix& out) {
  NumberReader reader(cursor);
  out = KZylXMatrix();
  for (int i = 0; i < 16; ++i) {
    double value;
    if (!reader.Next(value)) break;
    out.mData[i % 4][i / 4] = value;
  }
  cursor = reader.Cursor();
}

void ParseDoubles(const char* text, std::vector<double>& out, size_t expected) {
  const char* end = text ? text + std::strlen(text) : text;
  // The expected count only helps allocate once; the text bounds it.
  out.reserve(out.size() + std::min(expected, static_cast<size_t>(end - text) / 2 + 1));
  if (text) AppendDoubles(text, end, out);
}

}  // namespace zylsdk
