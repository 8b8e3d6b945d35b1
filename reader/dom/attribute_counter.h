#pragma once
// Counts the attributes of every start tag in a document's bytes on their way to the parser.
//
// libxml2 checks a start tag's attributes for repeats by comparing each with all those before
// it, so one element with 100,000 attributes costs seconds inside the parser, out of the
// reader's reach. Counting them first lets the reader stop such a document before the parser
// sees the tag. The count is the number of '=' outside quotes in a start tag, which is the
// number of attributes of any well-formed tag; comments, CDATA sections, processing
// instructions and declarations are passed over. Bytes of UTF-16 documents count the same way.

#include <cstddef>
#include <cstdint>

namespace zylsdk {

class AttributeCounter {
 public:
  explicit AttributeCounter(size_t maxAttributes) : mMaxAttributes(maxAttributes) {}

  // Scans the next `count` bytes of the document; false, from then on, once a start tag has
  // more than the maximum.
  bool Scan(const char* bytes, size_t count);
  bool Exceeded() const { return mExceeded; }

 private:
  enum class State {
    kText,         // character data
    kOpened,       // after '<'
    kBang,         // after "<!"
    kBangDash,     // after "<!-"
    kStartTag,     // inside a start tag, outside quotes
    kQuoted,       // inside a quoted attribute value
    kOtherMarkup,  // an end tag or a declaration: up to '>', quotes respected
    kOtherQuoted,  // a quoted string inside a declaration
    kComment,      // up to "-->"
    kCData,        // a CDATA or conditional section: up to "]]>"
    kInstruction,  // a processing instruction or the XML declaration: up to "?>"
  };

  // Scans 64 bytes; true when they are character data without markup.
  bool ScanWindow(const char* window);
  // Scans a window of plain tags and text (no comment, section, instruction or declaration
  // begins in it, no single quote, and no quote or '>' in its text) with masks alone; false,
  // having changed nothing, for any other window.
  bool ScanPlainTags(const char* window, uint64_t opens, uint64_t closes, uint64_t equals, uint64_t doubleQuotes,
                     uint64_t singleQuotes);
  // Takes a byte inside a start tag or other markup: a quote or '>' acts, any other does not.
  void ActInsideMarkup(char c);
  // Takes one byte of the markup that ScanWindow does not cross itself: the byte after '<', and
  // the bytes of declarations, comments, sections and instructions.
  void Step(char c);

  size_t mMaxAttributes;
  State mState = State::kText;
  char mQuote = 0;
  // The last two bytes seen inside a comment, CDATA section or instruction, for their ends.
  char mPrevious = 0;
  char mBeforePrevious = 0;
  size_t mAttributes = 0;
  bool mExceeded = false;
};

}  // namespace zylsdk
