// Lists read in pieces read exactly as the whole text does, wherever the pieces are cut.

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "reader/dom/numbers.h"
#include "reader/dom/streamed_values.h"

namespace zylsdk {
namespace {

const char* const kTexts[] = {
    "1 2.5 -3e2 +4 ,5,,6 nan inf -infinity 1e400 -1e-400 .5 5. +-7 x8y 9.1.2 1e+ 2e- 0x10",
    "  12 -34 +56 7-8+9 1.5 99999999999999999999 -99999999999999999999 --3 ++4 a12b",
    "joint_1 joint2\tjoint-3\n\r j4  \f j5,j6",
    "",
    "     ",
    "123456789",
};

StreamedValues ReadInPieces(ValueKind kind, const std::string& text, const std::vector<size_t>& cuts) {
  ValueStream stream(kind, 4);
  size_t start = 0;
  for (size_t cut : cuts) {
    stream.Append(text.data() + start, cut - start);
    start = cut;
  }
  stream.Append(text.data() + start, text.size() - start);
  return stream.Finish();
}

// Doubles compare by their bits, so that NaN equals NaN and -0 differs from 0.
std::vector<std::string> Bits(const std::vector<double>& values) {
  std::vector<std::string> bits;
  for (double value : values) bits.emplace_back(reinterpret_cast<const char*>(&value), sizeof value);
  return bits;
}

TEST(StreamedValues, EveryCutReadsAsTheWholeText) {
  for (const std::string text : kTexts) {
    std::vector<double> doubles;
    std::vector<int> ints;
    std::vector<KString> words;
    AppendDoubles(text.data(), text.data() + text.size(), doubles);
    AppendInts(text.data(), text.data() + text.size(), ints);
    AppendWords(text.data(), text.data() + text.size(), words);
    for (size_t first = 0; first <= text.size(); ++first) {
      for (size_t second = first; second <= text.size(); second += 3) {
        const std::vector<size_t> cuts{first, second};
        EXPECT_EQ(Bits(ReadInPieces(ValueKind::kDoubles, text, cuts).doubles), Bits(doubles)) << text << " " << first;
        EXPECT_EQ(ReadInPieces(ValueKind::kInts, text, cuts).ints, ints) << text << " " << first;
        std::vector<KString> streamed = ReadInPieces(ValueKind::kWords, text, cuts).words;
        ASSERT_EQ(streamed.size(), words.size()) << text;
        for (size_t i = 0; i < words.size(); ++i) EXPECT_EQ(streamed[i].Std(), words[i].Std());
      }
    }
  }
}

TEST(StreamedValues, RangesReadAsTheTextHelpers) {
  const std::string text = kTexts[0];
  std::vector<double> doubles;
  AppendDoubles(text.data(), text.data() + text.size(), doubles);
  std::vector<double> parsed;
  ParseDoubles(text.c_str(), parsed);
  EXPECT_EQ(Bits(doubles), Bits(parsed));
  const std::string integers = kTexts[1];
  std::vector<int> ints;
  AppendInts(integers.data(), integers.data() + integers.size(), ints);
  KArrayTemplate<int> helper;
  strtoints(integers.c_str(), helper);
  EXPECT_EQ(ints, helper.Std());
  EXPECT_EQ(ints, (std::vector<int>{12, -34, 56, 7, -8, 9, 1, 5, INT_MAX, INT_MIN, -3, 4, 12}));
}

}  // namespace
}  // namespace zylsdk
