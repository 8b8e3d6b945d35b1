#include "reader/dom/attribute_counter.h"

#include <cstring>

namespace zylsdk {

bool AttributeCounter::Scan(const char* bytes, size_t count) {
  size_t i = 0;
  while (i < count && !mExceeded) {
    if (mState == State::kText) {
      // Nearly all of a large document is character data: jump to the next markup.
      const void* open = std::memchr(bytes + i, '<', count - i);
      if (!open) return true;
      i = static_cast<size_t>(static_cast<const char*>(open) - bytes) + 1;
      mState = State::kOpened;
      continue;
    }
    Step(bytes[i++]);
  }
  return !mExceeded;
}

void AttributeCounter::Step(char c) {
  // UTF-16 writes markup characters beside a zero byte; skipping zeros reads it like UTF-8.
  if (c == '\0') return;
  const bool quote = c == '"' || c == '\'';
  switch (mState) {
    case State::kText:
      break;
    case State::kOpened:
      if (c == '!') {
        mState = State::kBang;
      } else if (c == '?') {
        mState = State::kInstruction;
        mPrevious = 0;
      } else if (c == '/') {
        mState = State::kOtherMarkup;
      } else if (c == '>') {
        mState = State::kText;
      } else {
        mState = State::kStartTag;
        mAttributes = 0;
      }
      break;
    case State::kBang:
    case State::kBangDash:
      if (c == '-') {
        mState = mState == State::kBang ? State::kBangDash : State::kComment;
        mPrevious = mBeforePrevious = 0;
      } else if (c == '[' && mState == State::kBang) {
        mState = State::kCData;
        mPrevious = mBeforePrevious = 0;
      } else {
        mState = State::kOtherMarkup;
        Step(c);
      }
      break;
    case State::kStartTag:
      if (c == '=') {
        mExceeded = ++mAttributes > mMaxAttributes;
      } else if (quote) {
        mState = State::kQuoted;
        mQuote = c;
      } else if (c == '>') {
        mState = State::kText;
      }
      break;
    case State::kQuoted:
      if (c == mQuote) mState = State::kStartTag;
      break;
    case State::kOtherMarkup:
      if (quote) {
        mState = State::kOtherQuoted;
        mQuote = c;
      } else if (c == '>') {
        mState = State::kText;
      }
      break;
    case State::kOtherQuoted:
      if (c == mQuote) mState = State::kOtherMarkup;
      break;
    case State::kComment:
    case State::kCData: {
      const char closing = mState == State::kComment ? '-' : ']';
      if (c == '>' && mPrevious == closing && mBeforePrevious == closing) mState = State::kText;
      mBeforePrevious = mPrevious;
      mPrevious = c;
      break;
    }
    case State::kInstruction:
      if (c == '>' && mPrevious == '?') mState = State::kText;
      mPrevious = c;
      break;
  }
}

}  // namespace zylsdk
