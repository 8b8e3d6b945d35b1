#include "reader/dom/attribute_counter.h"

#include <cstring>

namespace zylsdk {

namespace {

// The bytes that can change the state inside a start tag or other markup; any other byte there
// is passed over without a look.
bool ActsInsideMarkup(char c) { return c == '=' || c == '"' || c == '\'' || c == '>'; }

}  // namespace

bool AttributeCounter::Scan(const char* bytes, size_t count) {
  const char* at = bytes;
  const char* const end = bytes + count;
  while (at < end && !mExceeded) {
    // Nearly all of a document is character data, names and quoted values: each is crossed in
    // one step, up to the next byte that acts.
    if (mState == State::kText || mState == State::kQuoted || mState == State::kOtherQuoted) {
      const char wanted = mState == State::kText ? '<' : mQuote;
      const void* found = std::memchr(at, wanted, static_cast<size_t>(end - at));
      if (!found) return true;
      at = static_cast<const char*>(found);
    } else if (mState == State::kStartTag || mState == State::kOtherMarkup) {
      while (at < end && !ActsInsideMarkup(*at)) ++at;
      if (at == end) return true;
    }
    Step(*at++);
  }
  return !mExceeded;
}

void AttributeCounter::Step(char c) {
  // UTF-16 writes markup characters beside a zero byte; skipping zeros reads it like UTF-8.
  if (c == '\0') return;
  const bool quote = c == '"' || c == '\'';
  switch (mState) {
    case State::kText:
      if (c == '<') mState = State::kOpened;
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
