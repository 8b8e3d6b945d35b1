// Numbers in document text: separators, a leading ".", saturation, the end of the text, texts
// without numbers, the C locale, and time proportional to the text's length.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <chrono>
#include <climits>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "reader/dom/numbers.h"
#include "tests/reader/decimal_comma_locale.h"

namespace {

using namespace zylsdk;

// Every number strtodouble reads from `text`, checking that the cursor stays inside the text.
std::vector<double> ReadAllDoubles(const char* text, int count) {
  std::vector<double> values;
  const char* cursor = text;
  const char* end = text + std::strlen(text);
  for (int i = 0; i < count; ++i) {
    values.push_back(strtodouble(&cursor));
    EXPECT_TRUE(cursor >= text && cursor <= end);
  }
  return values;
}

TEST(Strtodouble, ReadsNumbersSeparatedBySpacesAndCommas) {
  EXPECT_EQ(ReadAllDoubles("1.5 2,3\n-4e2\t\r+7 , 8", 6), (std::vector<double>{1.5, 2, 3, -400, 7, 8}));
}

TEST(Strtodouble, MovesTheCursorPastTheNumberAndTheSeparatorsAfterIt) {
  const char* text = "  12.5 ,  x";
  const char* cursor = text;
  EXPECT_EQ(strtodouble(&cursor), 12.5);
  EXPECT_STREQ(cursor, "x");
}

TEST(Strtodouble, AcceptsALeadingPoint) {
  EXPECT_EQ(ReadAllDoubles(".5 -.25 +.75 5.", 4), (std::vector<double>{0.5, -0.25, 0.75, 5.0}));
}

TEST(Strtodouble, GivesZeroWithoutANumberAndNeverReadsPastTheEnd) {
  const char* empty = "";
  const char* cursor = empty;
  EXPECT_EQ(strtodouble(&cursor), 0.0);
  EXPECT_EQ(cursor, empty);
  const char* words = "abc";
  cursor = words;
  EXPECT_EQ(strtodouble(&cursor), 0.0);
  EXPECT_EQ(*cursor, '\0');
  EXPECT_EQ(strtodouble(&cursor), 0.0);  // again at the end: still 0, still there
  EXPECT_EQ(*cursor, '\0');
  EXPECT_EQ(strtodouble(nullptr), 0.0);
  const char* null = nullptr;
  EXPECT_EQ(strtodouble(&null), 0.0);
}

TEST(Strtodouble, TextOfAnExactLengthIsNotReadBeyond) {
  // The number fills the buffer up to its terminating NUL; under the address sanitizer a read
  // beyond it would be reported.
  std::vector<char> buffer = {'1', '.', '2', '5', 'e', '1', '\0'};
  const char* cursor = buffer.data();
  EXPECT_EQ(strtodouble(&cursor), 12.5);
  EXPECT_EQ(cursor, buffer.data() + 6);
  std::vector<char> dangling = {'3', 'e', '\0'};
  cursor = dangling.data();
  EXPECT_EQ(strtodouble(&cursor), 3.0);
  EXPECT_EQ(strtodouble(&cursor), 0.0);
  EXPECT_EQ(cursor, dangling.data() + 2);
}

TEST(Strtodouble, SkipsWhatCannotStartANumber) {
  EXPECT_EQ(ReadAllDoubles("x1 [2] #3", 3), (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(ReadAllDoubles("+-5 -+6 .e7", 3), (std::vector<double>{-5, 6, 7}));
}

TEST(Strtodouble, OutOfRangeNumbersBecomeInfinityOrZero) {
  std::vector<double> values = ReadAllDoubles("1e400 -1e400 1e-400 -1e-400", 4);
  EXPECT_EQ(values[0], HUGE_VAL);
  EXPECT_EQ(values[1], -HUGE_VAL);
  EXPECT_EQ(values[2], 0.0);
  EXPECT_EQ(values[3], 0.0);
  EXPECT_TRUE(std::signbit(values[3]));
  // Without an exponent too: many zeros after the point make a tiny number, many digits a huge one.
  std::string tiny = "0." + std::string(400, '0') + "1";
  std::string huge = "1" + std::string(400, '0');
  const char* cursor = tiny.c_str();
  EXPECT_EQ(strtodouble(&cursor), 0.0);
  cursor = huge.c_str();
  EXPECT_EQ(strtodouble(&cursor), HUGE_VAL);
  std::string shifted = "0.00001e400";  // 1e395: too large despite the leading zeros
  cursor = shifted.c_str();
  EXPECT_EQ(strtodouble(&cursor), HUGE_VAL);
}

TEST(Strtodouble, InfinityAndNan) {
  std::vector<double> values = ReadAllDoubles("inf -Infinity nan NAN(12)", 4);
  EXPECT_EQ(values[0], HUGE_VAL);
  EXPECT_EQ(values[1], -HUGE_VAL);
  EXPECT_TRUE(std::isnan(values[2]));
  EXPECT_TRUE(std::isnan(values[3]));
  const char* text = "nan(12) 4";
  const char* cursor = text;
  strtodouble(&cursor);
  EXPECT_EQ(strtodouble(&cursor), 4.0);
}

// Decimal numbers convert to the double nearest to them, exactly as the standard library
// converts them: halfway cases, subnormals, the largest doubles and mantissas longer than any
// integer type.
TEST(Strtodouble, RoundsAsTheStandardLibraryDoes) {
  std::vector<std::string> texts = {"9007199254740993", "9007199254740993.0000000000000000000001",
                                    "2.2250738585072011e-308", "2.2250738585072014e-308", "4.9406564584124654e-324",
                                    "2.4703282292062328e-324", "1.7976931348623157e308", "0.1", "0.3", "123456.789e-3",
                                    "-0.0", "1e22", "1e23", "8.98846567431158e307", "7.2057594037927933e16"};
  std::mt19937_64 random(7);
  for (int i = 0; i < 20000; ++i) {
    std::string text = random() % 2 ? "-" : "";
    const int digits = 1 + static_cast<int>(random() % 25);
    for (int d = 0; d < digits; ++d) text += static_cast<char>('0' + random() % 10);
    if (random() % 2) text.insert(text.size() - static_cast<size_t>(random() % digits), ".");
    if (random() % 2) text += "e" + std::to_string(static_cast<int>(random() % 640) - 330);
    texts.push_back(text);
  }
  for (const std::string& text : texts) {
    double expected = 0.0;
    const std::from_chars_result standard = std::from_chars(text.data(), text.data() + text.size(), expected);
    if (standard.ec != std::errc()) continue;  // out of range: OutOfRangeNumbersBecomeInfinityOrZero
    const char* cursor = text.c_str();
    const double read = strtodouble(&cursor);
    EXPECT_EQ(std::memcmp(&read, &expected, sizeof read), 0) << text;
    EXPECT_EQ(*cursor, '\0') << text;
    std::vector<double> streamed;
    AppendDoubles(text.data(), text.data() + text.size(), streamed);
    ASSERT_EQ(streamed.size(), 1u) << text;
    EXPECT_EQ(std::memcmp(&streamed[0], &expected, sizeof expected), 0) << text;
  }
}

// Decimals of up to fifteen digits without exponent take a shorter road than longer ones: every
// length around that limit, the point in every place, a sign, leading zeros and what may follow
// the digits convert to the standard library's double and end where it ends.
TEST(Strtodouble, ShortDecimalsConvertAsTheStandardLibraryDoesAtEveryLength) {
  std::mt19937_64 random(11);
  std::vector<std::string> texts = {"-0", "0.", ".5", "-.5", "007", "1.5.3", "2e", "3.e1", "9.", "-0.000"};
  for (int digits = 1; digits <= 18; ++digits) {
    for (int round = 0; round < 40; ++round) {
      std::string number;
      for (int d = 0; d < digits; ++d) number += static_cast<char>('0' + random() % 10);
      if (round % 4 == 0) number[0] = '0';
      const size_t point = static_cast<size_t>(random() % (digits + 2));
      if (point <= number.size()) number.insert(point, ".");
      if (round % 3 == 0) number.insert(0, "-");
      static const char* const kAfter[] = {"", " 1", "x", "e5", "E-2", ".7", ",3"};
      texts.push_back(number + kAfter[round % 7]);
    }
  }
  for (const std::string& text : texts) {
    double expected = 0.0;
    const std::from_chars_result standard = std::from_chars(text.data(), text.data() + text.size(), expected);
    ASSERT_EQ(standard.ec, std::errc()) << text;
    const char* cursor = text.c_str();
    NumberReader reader(cursor);
    double read = -1.0;
    ASSERT_TRUE(reader.Next(read)) << text;
    EXPECT_EQ(std::memcmp(&read, &expected, sizeof read), 0) << text;
    // The streamed reading of the text cut right after the number gives the same double.
    const size_t length = static_cast<size_t>(standard.ptr - text.data());
    std::vector<double> streamed;
    AppendDoubles(text.data(), text.data() + length, streamed);
    ASSERT_FALSE(streamed.empty()) << text;
    EXPECT_EQ(std::memcmp(&streamed[0], &expected, sizeof expected), 0) << text;
  }
}

TEST(Strtoint, ReadsIntegersAndSkipsALeadingPoint) {
  const char* text = " 42, -7\n.4";
  const char* cursor = text;
  EXPECT_EQ(strtoint(&cursor), 42);
  EXPECT_EQ(strtoint(&cursor), -7);
  EXPECT_EQ(strtoint(&cursor), 4);
  EXPECT_EQ(*cursor, '\0');
  EXPECT_EQ(strtoint(&cursor), 0);
}

TEST(Strtoint, VersionPartsBeginningWithAPoint) {
  for (const char* part : {".4", ".4.1", " .4", ".04"}) {
    const char* cursor = part;
    EXPECT_EQ(strtoint(&cursor), 4) << part;
  }
  const char* cursor = "+3";
  EXPECT_EQ(strtoint(&cursor), 3);
}

TEST(Strtoint, SaturatesInsteadOfOverflowing) {
  const char* texts[] = {"2147483647", "2147483648", "99999999999999999999999", "-2147483648", "-2147483649",
                         "-99999999999999999999999"};
  const int expected[] = {INT_MAX, INT_MAX, INT_MAX, INT_MIN, INT_MIN, INT_MIN};
  for (int i = 0; i < 6; ++i) {
    const char* cursor = texts[i];
    EXPECT_EQ(strtoint(&cursor), expected[i]) << texts[i];
    EXPECT_EQ(*cursor, '\0') << texts[i];
  }
}

TEST(Strtoint, GivesZeroWithoutANumber) {
  const char* cursor = "abc";
  EXPECT_EQ(strtoint(&cursor), 0);
  EXPECT_EQ(*cursor, '\0');
  cursor = "";
  EXPECT_EQ(strtoint(&cursor), 0);
  EXPECT_EQ(strtoint(nullptr), 0);
}

TEST(Strtoints, ReadsEveryIntegerSkippingOtherCharacters) {
  KArrayTemplate<int> values{9};
  strtoints("1 2\t-3\n+4 x5 7a8 -x 1.5", values);
  EXPECT_EQ(values, (KArrayTemplate<int>{9, 1, 2, -3, 4, 5, 7, 8, 1, 5}));  // appended after 9
}

TEST(Strtoints, SaturatesAndAcceptsEmptyText) {
  KArrayTemplate<int> values;
  strtoints("99999999999999 -99999999999999 2147483647", values);
  EXPECT_EQ(values, (KArrayTemplate<int>{INT_MAX, INT_MIN, INT_MAX}));
  KArrayTemplate<int> none;
  strtoints("", none);
  strtoints("   - + x", none);
  strtoints(nullptr, none);
  EXPECT_TRUE(none.IsEmpty());
}

TEST(Strtoints, TextEndingInADigitIsNotReadBeyond) {
  std::vector<char> buffer = {'1', ' ', '2', '3', '\0'};
  KArrayTemplate<int> values;
  strtoints(buffer.data(), values);
  EXPECT_EQ(values, (KArrayTemplate<int>{1, 23}));
}

// Integers as a plain reading takes them: a sign directly before the digits, saturation at the
// int range, every other character passed over.
std::vector<int> ReferenceInts(const std::string& text) {
  std::vector<int> values;
  for (size_t i = 0; i < text.size();) {
    const bool negative = text[i] == '-';
    const size_t first = (negative || text[i] == '+') ? i + 1 : i;
    if (first >= text.size() || !std::isdigit(static_cast<unsigned char>(text[first]))) {
      ++i;
      continue;
    }
    long long magnitude = 0;
    for (i = first; i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])); ++i)
      magnitude = std::min(magnitude * 10 + (text[i] - '0'), 1LL << 40);
    const long long value = negative ? -magnitude : magnitude;
    values.push_back(static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX)));
  }
  return values;
}

// `count` integers of 1 to 12 digits (of 60 to 139 every `longEvery`-th one, when not 0), each
// followed by one of `separators` and preceded by a sign one time in `signEvery` (when not 0).
std::string RandomIntegerText(uint64_t seed, int count, const std::vector<std::string>& separators, int signEvery,
                              int longEvery) {
  std::mt19937_64 random(seed);
  std::string text;
  for (int i = 0; i < count; ++i) {
    if (signEvery > 0 && random() % signEvery == 0) text += random() % 2 ? "-" : "+";
    const bool longRun = longEvery > 0 && i % longEvery == 5;
    const int digits = longRun ? 60 + static_cast<int>(random() % 80) : 1 + static_cast<int>(random() % 12);
    for (int d = 0; d < digits; ++d) text += static_cast<char>('0' + random() % 10);
    text += separators[random() % separators.size()];
  }
  return text;
}

void ExpectReadAsAPlainReading(const std::string& text) {
  std::vector<int> values;
  AppendInts(text.data(), text.data() + text.size(), values);
  EXPECT_EQ(values, ReferenceInts(text));
}

// Integers of every length from 1 to 12 digits, between separators and stray characters of
// every kind, read as the plain reading reads them; and the same text cut at every length is
// never read past its cut (a number is whole only when the cut falls after it).
TEST(Strtoints, EveryLengthAndNeighbourReadsAsAPlainReading) {
  const std::string text =
      RandomIntegerText(5, 3000, {" ", "  ", "\n", "\t", ",", "x", "-", "+", ".", "-x", "\xc3\xa9", "e"}, 5, 0);
  ExpectReadAsAPlainReading(text);
  for (size_t cut = 0; cut < 200; ++cut) {
    std::vector<int> prefix;
    AppendInts(text.data(), text.data() + cut, prefix);
    EXPECT_EQ(prefix, ReferenceInts(text.substr(0, cut))) << cut;
  }
}

// Lists without signs are read many characters at a time: runs of every length (beyond eight
// digits, beyond the int range, beyond 64 characters), every separator, the text started and
// cut at every place, all read as the plain reading reads them.
TEST(Strtoints, UnsignedListsReadAsAPlainReadingWhereverTheyStartAndEnd) {
  const std::string text =
      RandomIntegerText(17, 4000, {" ", " ", " ", "\n", "  ", "x", ".", ",", "\xc3\xa9", "\t\r\n"}, 0, 97);
  ExpectReadAsAPlainReading(text);
  for (size_t start = 0; start < 80; ++start) {
    for (size_t length = 60; length < 300; length += 7) {
      std::vector<int> part;
      AppendInts(text.data() + start, text.data() + start + length, part);
      ASSERT_EQ(part, ReferenceInts(text.substr(start, length))) << start << " " << length;
    }
  }
  // Signs among such lists: a window that holds one is read number by number.
  std::string signedText = text.substr(0, 5000);
  for (size_t at = 100; at < signedText.size(); at += 337) signedText[at] = '-';
  ExpectReadAsAPlainReading(signedText);
}

TEST(Strtocolor, MissingAlphaIsOne) {
  EXPECT_EQ(strtocolor("0.1 0.2 0.3"), KZylColor(0.1, 0.2, 0.3, 1.0));
  EXPECT_EQ(strtocolor("1 0.5 0.25 0.125"), KZylColor(1, 0.5, 0.25, 0.125));
  EXPECT_EQ(strtocolor("0.1,0.2,0.3,0.4"), KZylColor(0.1, 0.2, 0.3, 0.4));
  EXPECT_EQ(strtocolor("1 2"), KZylColor(1, 2, 0, 1));
  EXPECT_EQ(strtocolor(""), KZylColor(0, 0, 0, 1));
  EXPECT_EQ(strtocolor(nullptr), KZylColor(0, 0, 0, 1));
  EXPECT_EQ(strtocolor("1 2 3 4 5"), KZylColor(1, 2, 3, 4));
}

TEST(Strtomatrix, ConvertsColladaRowsToTheKitsColumns) {
  // COLLADA writes the translation in the fourth column (values 3, 7, 11).
  const char* text = "1 0 0 10  0 1 0 20  0 0 1 30  0 0 0 1";
  const char* cursor = text;
  KZylXMatrix m;
  strtomatrix(cursor, m);
  EXPECT_EQ(m.GetT(), KZylVector4(10, 20, 30, 1));
  EXPECT_EQ(*cursor, '\0');

  const char* numbered = "0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 rest";
  cursor = numbered;
  strtomatrix(cursor, m);
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) EXPECT_EQ(m.mData[c][r], 4 * r + c) << "value " << 4 * r + c;
  EXPECT_STREQ(cursor, "rest");
}

TEST(Strtomatrix, MissingNumbersComeFromTheIdentity) {
  const char* cursor = "";
  KZylXMatrix m = TranslationMatrix(KZylVector4(5, 5, 5));
  strtomatrix(cursor, m);
  EXPECT_TRUE(m.IsIdentity());
  const char* few = "2 0 0 7";
  cursor = few;
  strtomatrix(cursor, m);
  KZylXMatrix expected;
  expected.mData[0][0] = 2;
  expected.mData[3][0] = 7;
  EXPECT_EQ(m, expected);
}

TEST(NumberReader, TellsWhenTheTextIsExhausted) {
  NumberReader reader("1 2 x");
  double value = -1;
  EXPECT_TRUE(reader.Next(value));
  EXPECT_EQ(value, 1);
  EXPECT_TRUE(reader.Next(value));
  EXPECT_EQ(value, 2);
  EXPECT_FALSE(reader.Next(value));
  EXPECT_EQ(value, 2);  // untouched
  NumberReader ints("7 -8");
  int i = 0;
  EXPECT_TRUE(ints.NextInt(i));
  EXPECT_TRUE(ints.NextInt(i));
  EXPECT_EQ(i, -8);
  EXPECT_FALSE(ints.NextInt(i));
  std::vector<double> all;
  ParseDoubles("1,2 3", all);
  EXPECT_EQ(all, (std::vector<double>{1, 2, 3}));
}

TEST(Numbers, UseTheCLocaleWhateverTheProcessLocale) {
  zyltest::DecimalCommaLocale locale;
  if (!locale.Active()) GTEST_SKIP() << "no locale with a decimal comma on this system";
  EXPECT_EQ(ReadAllDoubles("1.5 2,5", 3), (std::vector<double>{1.5, 2, 5}));
  EXPECT_EQ(strtocolor("0.5 0.25 0.125"), KZylColor(0.5, 0.25, 0.125, 1));
  const char* cursor = "0.5 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1";
  KZylXMatrix m;
  strtomatrix(cursor, m);
  EXPECT_EQ(m.mData[0][0], 0.5);
  std::vector<double> all;
  ParseDoubles("1e-3 .5", all);
  EXPECT_EQ(all, (std::vector<double>{0.001, 0.5}));
}

// Reading takes time in proportion to the text, whatever the text holds. A scan that starts
// over for every character of a long run would take hours on these texts instead of
// milliseconds; the bound only catches that, it measures nothing finer.
TEST(Numbers, ReadingIsLinearInTheTextLength) {
  const size_t size = 4 * 1000 * 1000;
  std::string mixed;
  mixed.reserve(size);
  while (mixed.size() < size) mixed += "1x";
  const std::string texts[] = {mixed, std::string(size, 'x'), std::string(size, '-'), std::string(size, '.'),
                               std::string(size, '1') + "e"};
  auto start = std::chrono::steady_clock::now();
  for (const std::string& text : texts) {
    std::vector<double> values;
    ParseDoubles(text.c_str(), values);
    KArrayTemplate<int> ints;
    strtoints(text.c_str(), ints);
    NumberReader reader(text.c_str());
    int value;
    while (reader.NextInt(value)) {
    }
  }
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  EXPECT_LT(seconds, 60.0);
}

}  // namespace
