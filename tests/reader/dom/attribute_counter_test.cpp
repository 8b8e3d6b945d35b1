// The attribute count of start tags, taken from a document's bytes before the parser sees them.

#include "reader/dom/attribute_counter.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using zylsdk::AttributeCounter;

// Whether `bytes`, scanned in pieces of `piece` bytes, stay within `maxAttributes` a tag.
bool WithinLimit(const std::string& bytes, size_t maxAttributes, size_t piece) {
  AttributeCounter counter(maxAttributes);
  for (size_t at = 0; at < bytes.size(); at += piece)
    if (!counter.Scan(bytes.data() + at, std::min(piece, bytes.size() - at))) return false;
  return true;
}

// A start tag with `count` attributes.
std::string Tag(size_t count) {
  std::string tag = "<node";
  for (size_t i = 0; i < count; ++i) tag += " a" + std::to_string(i) + "=\"1\"";
  return tag + "/>";
}

TEST(AttributeCounter, CountsTheAttributesOfEachStartTag) {
  for (size_t piece : {size_t{1}, size_t{3}, size_t{4096}}) {
    EXPECT_TRUE(WithinLimit(Tag(3) + Tag(3) + "<a/>", 3, piece)) << piece;
    EXPECT_FALSE(WithinLimit(Tag(2) + Tag(4), 3, piece)) << piece;
  }
}

TEST(AttributeCounter, EqualSignsInValuesAndTextAreNotAttributes) {
  EXPECT_TRUE(WithinLimit("<a b=\"x=y=z\" c='=='>1 = 2 = 3</a>", 2, 1));
  EXPECT_FALSE(WithinLimit("<a b=\"x=y=z\" c='==' d='x'>1 = 2</a>", 2, 1));
}

TEST(AttributeCounter, AngleBracketsInValuesDoNotEndTheTag) {
  for (size_t piece : {size_t{1}, size_t{2}, size_t{5}, size_t{4096}}) {
    EXPECT_FALSE(WithinLimit("<a b='>' c=\"/>\" d='1'/>", 2, piece)) << piece;
    EXPECT_TRUE(WithinLimit("<a b='>' c=\"/>\"/><e f='1' g='2'/>", 2, piece)) << piece;
  }
}

TEST(AttributeCounter, CommentsSectionsInstructionsAndDeclarationsAreNotTags) {
  const std::string markup =
      "<?xml version=\"1.0\" encoding=\"utf-8\"?>"
      "<!DOCTYPE COLLADA [<!ATTLIST node x CDATA \"a=b\">]>"
      "<!-- <node a=1 b=2 c=3> -- still a comment -->"
      "<a><![CDATA[<node a=1 b=2 c=3> ]] still data ]]></a><?pi a=1 b=2 c=3?></a>";
  for (size_t piece : {size_t{1}, size_t{2}, size_t{4096}}) EXPECT_TRUE(WithinLimit(markup, 1, piece)) << piece;
  // After each of them, start tags are counted again.
  EXPECT_FALSE(WithinLimit(markup + Tag(2), 1, 1));
}

TEST(AttributeCounter, Utf16MarkupCountsAsUtf8Does) {
  const std::string utf8 = "<!-- x=1 y=2 --><a b=\"1\" c=\"2\"/>";
  std::string utf16;
  for (char c : utf8) utf16 += std::string(1, c) + '\0';
  EXPECT_TRUE(WithinLimit(utf16, 2, 1));
  EXPECT_FALSE(WithinLimit(utf16, 1, 1));
}

TEST(AttributeCounter, LongNamesValuesAndTextsAreCrossedAtEveryOffset) {
  // Bytes that act fall at every place of a 16-byte block, and past it.
  for (size_t shift = 0; shift < 40; ++shift) {
    const std::string pad(shift, 'x');
    const std::string tag = "<node" + pad + " a" + pad + "=\"" + pad + "=\" b='" + pad + "' c" + pad + "=\"1\"" + pad + ">";
    const std::string document = "<r>" + pad + tag + pad + "= ' \"</node>" + Tag(3) + "</r>";
    for (size_t piece : {size_t{1}, size_t{7}, size_t{16}, size_t{4096}}) {
      EXPECT_TRUE(WithinLimit(document, 3, piece)) << shift << " " << piece;
      EXPECT_FALSE(WithinLimit(document, 2, piece)) << shift << " " << piece;
      EXPECT_FALSE(WithinLimit(document + Tag(4), 3, piece)) << shift << " " << piece;
    }
  }
}

TEST(AttributeCounter, TextOfAnyLengthHidesNoTagAfterIt) {
  // Long character data is crossed in one search: the tag after it is seen wherever it starts.
  for (size_t length = 0; length < 300; ++length) {
    const std::string document = "<r>" + std::string(length, '7') + Tag(2) + "</r>";
    for (size_t piece : {size_t{64}, size_t{100}, size_t{4096}}) {
      EXPECT_TRUE(WithinLimit(document, 2, piece)) << length << " " << piece;
      EXPECT_FALSE(WithinLimit(document, 1, piece)) << length << " " << piece;
    }
  }
}

// The rules, a byte at a time: the most attributes any start tag of `bytes` has so far, for each
// prefix length; what the counter must agree with however it reads.
class PlainCount {
 public:
  size_t Most() const { return mMost; }
  void Take(char c) {
    const bool markupByte = mState == kOpened || mState == kBang || mState == kBangDash || mState == kComment ||
                            mState == kCData || mState == kInstruction;
    // Zero bytes (UTF-16) are passed over wherever they could matter.
    if (markupByte && c == '\0') return;
    switch (mState) {
      case kText: mState = c == '<' ? kOpened : kText; break;
      case kOpened:
        mState = c == '!' ? kBang : c == '?' ? kInstruction : c == '/' ? kOtherMarkup : c == '>' ? kText : kStartTag;
        mPrevious = mBeforePrevious = 0;
        mCount = 0;
        break;
      case kBang:
      case kBangDash:
        if (c == '-') {
          mState = mState == kBang ? kBangDash : kComment;
        } else if (c == '[' && mState == kBang) {
          mState = kCData;
        } else {
          mState = kOtherMarkup;
          InsideMarkup(c);
        }
        break;
      case kComment:
      case kCData: {
        const char closing = mState == kComment ? '-' : ']';
        if (c == '>' && mPrevious == closing && mBeforePrevious == closing) mState = kText;
        mBeforePrevious = mPrevious;
        mPrevious = c;
        break;
      }
      case kInstruction:
        if (c == '>' && mPrevious == '?') mState = kText;
        mPrevious = c;
        break;
      case kStartTag:
        if (c == '=') mMost = std::max(mMost, ++mCount);
        InsideMarkup(c);
        break;
      case kOtherMarkup: InsideMarkup(c); break;
      case kQuoted:
      case kOtherQuoted:
        if (c == mQuote) mState = mState == kQuoted ? kStartTag : kOtherMarkup;
        break;
    }
  }

 private:
  enum State { kText, kOpened, kBang, kBangDash, kStartTag, kQuoted, kOtherMarkup, kOtherQuoted, kComment, kCData, kInstruction };
  void InsideMarkup(char c) {
    if (c == '>') {
      mState = kText;
    } else if (c == '"' || c == '\'') {
      mState = mState == kStartTag ? kQuoted : kOtherQuoted;
      mQuote = c;
    }
  }
  State mState = kText;
  char mQuote = 0;
  char mPrevious = 0;
  char mBeforePrevious = 0;
  size_t mCount = 0;
  size_t mMost = 0;
};

// Scans `document` in random pieces of up to `longestPiece` bytes, expecting after each piece
// the answer of the byte-at-a-time rules.
void ExpectTheRulesReadAByteAtATime(const std::string& document, size_t limit, size_t longestPiece,
                                    std::mt19937& random, int round) {
  AttributeCounter counter(limit);
  PlainCount plain;
  for (size_t at = 0; at < document.size();) {
    const size_t piece = std::min<size_t>(1 + random() % longestPiece, document.size() - at);
    for (size_t i = 0; i < piece; ++i) plain.Take(document[at + i]);
    ASSERT_EQ(counter.Scan(document.data() + at, piece), plain.Most() <= limit)
        << "round " << round << ", up to byte " << at + piece << " of:\n" << document;
    at += piece;
  }
  EXPECT_EQ(counter.Exceeded(), plain.Most() > limit) << round;
}

TEST(AttributeCounter, AgreesWithTheRulesReadAByteAtATimeOnRandomMarkup) {
  const std::vector<std::string> fragments = {
      "<a", "<node", " b=\"x=>y\"", " c='q\"=>'", " d=1", ">", "/>", "</a>", "text=more", "=", "\"", "'", "<",
      "<!-- e<f g=\"h\" -- -->", "<![CDATA[ <i j=\"k\"> ]] ]]>", "<?pi l=\"m\"?>", "<!DOCTYPE x [<!ATTLIST a b CDATA \"c=>\">]>",
      std::string(1, '\0'), " ", "\n", std::string(70, 'n'), std::string(130, '5') + " ", "<!", "<!-", "<?", "-->", "]]>", "?>"};
  std::mt19937 random(20261124);
  for (int round = 0; round < 400; ++round) {
    std::string document;
    const int parts = 1 + static_cast<int>(random() % 120);
    for (int i = 0; i < parts; ++i) document += fragments[random() % fragments.size()];
    ExpectTheRulesReadAByteAtATime(document, random() % 6, 300, random, round);
  }
}

// Limits of a window's width and more, where whole windows of plain tags are read from their
// masks: tags of many attributes cross windows at every offset among text, end tags and the
// markup that falls back to the byte-wise rules.
TEST(AttributeCounter, AgreesWithTheRulesReadAByteAtATimeOnLongTags) {
  const std::vector<std::string> fragments = {
      "<a", "<node id=\"n1\"", " b=\"x=>y\"", " c=\"1 2\"", " d=1", ">", "/>", "</a>", "</node >", "1 2 3", "=", "\"",
      "'", "<", " e='f'", "<!-- g=\"h\" -->", "<?pi i=\"j\"?>", std::string(1, '\0'), " ", "\n", "k>l",
      std::string(70, 'n'), "<m/>", "<n o=\"p\">q</n>"};
  std::mt19937 random(20261125);
  for (int round = 0; round < 300; ++round) {
    std::string document;
    const int parts = 1 + static_cast<int>(random() % 60);
    for (int i = 0; i < parts; ++i) {
      if (random() % 4 == 0) {
        // Many attributes, the tag sometimes left open for the next fragment.
        document += "<t";
        const size_t count = 40 + random() % 100;
        for (size_t a = 0; a < count; ++a) document += (random() % 8 == 0) ? " r=\"=>\"" : " s=\"1\"";
        if (random() % 3) document += random() % 2 ? ">" : "/>";
      } else {
        document += fragments[random() % fragments.size()];
      }
    }
    ExpectTheRulesReadAByteAtATime(document, 64 + random() % 80, 500, random, round);
  }
}

TEST(AttributeCounter, StaysExceededOnceExceeded) {
  AttributeCounter counter(1);
  EXPECT_FALSE(counter.Scan("<a b='1' c='2'/>", 16));
  EXPECT_TRUE(counter.Exceeded());
  EXPECT_FALSE(counter.Scan("<a/>", 4));
}

}  // namespace
