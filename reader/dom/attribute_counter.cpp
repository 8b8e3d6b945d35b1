#include "reader/dom/attribute_counter.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zylsdk {

namespace {

constexpr size_t kWindow = 64;

// The bytes of a 64-byte window equal to `c`, as the bits of a mask (bit i for byte i).
uint64_t BytesEqual(const char* window, char c) {
  uint64_t mask = 0;
#if defined(__SSE2__)
  const __m128i wanted = _mm_set1_epi8(c);
  for (int i = 0; i < 4; ++i) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(window + 16 * i));
    mask |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, wanted)))) << (16 * i);
  }
#else
  for (size_t i = 0; i < kWindow; ++i) mask |= static_cast<uint64_t>(window[i] == c) << i;
#endif
  return mask;
}

// The bits of `mask` from bit `at` on; none from 64 on.
uint64_t From(uint64_t mask, int at) { return at < 64 ? mask & (~uint64_t{0} << at) : 0; }

// The bits below the lowest bit of `mask`; all of them when it has none.
uint64_t BelowLowest(uint64_t mask) { return mask ? (mask & (~mask + 1)) - 1 : ~uint64_t{0}; }

}  // namespace

bool AttributeCounter::Scan(const char* bytes, size_t count) {
  // Whole windows of 64 bytes, then the rest padded with zero bytes, which act in no state.
  size_t at = 0;
  while (at + kWindow <= count && !mExceeded) {
    if (ScanWindow(bytes + at)) {
      // Long character data (number lists): up to its end in one search.
      const void* opening = std::memchr(bytes + at + kWindow, '<', count - at - kWindow);
      at = opening ? static_cast<size_t>(static_cast<const char*>(opening) - bytes) : count;
    } else {
      at += kWindow;
    }
  }
  if (at < count && !mExceeded) {
    char last[kWindow] = {};
    std::memcpy(last, bytes + at, count - at);
    ScanWindow(last);
  }
  return !mExceeded;
}

bool AttributeCounter::ScanWindow(const char* window) {
  const uint64_t opens = BytesEqual(window, '<');
  // Character data without markup: by far the most common window of a large document.
  if (mState == State::kText && opens == 0) return true;
  const uint64_t closes = BytesEqual(window, '>');
  const uint64_t equals = BytesEqual(window, '=');
  const uint64_t doubleQuotes = BytesEqual(window, '"');
  const uint64_t singleQuotes = BytesEqual(window, '\'');
  const uint64_t quotesAndCloses = doubleQuotes | singleQuotes | closes;
  // Character data, names and quoted values are crossed from one byte that acts to the next,
  // found in the masks; the rest of the markup goes through Step a byte at a time.
  int at = 0;
  while (at < static_cast<int>(kWindow) && !mExceeded) {
    switch (mState) {
      case State::kText: {
        const uint64_t next = From(opens, at);
        if (!next) return false;
        at = __builtin_ctzll(next) + 1;
        mState = State::kOpened;
        // What follows '<' says what opens.
        if (at < static_cast<int>(kWindow)) Step(window[at++]);
        break;
      }
      case State::kStartTag: {
        // The tag's '=' outside quotes are its attributes; each quoted value is crossed whole.
        for (;;) {
          const uint64_t next = From(quotesAndCloses, at);
          mAttributes += static_cast<size_t>(__builtin_popcountll(From(equals, at) & BelowLowest(next)));
          mExceeded = mAttributes > mMaxAttributes;
          if (!next || mExceeded) return false;
          at = __builtin_ctzll(next);
          const char c = window[at++];
          if (c == '>') {
            mState = State::kText;
            break;
          }
          const uint64_t closing = From(c == '"' ? doubleQuotes : singleQuotes, at);
          if (!closing) {
            mState = State::kQuoted;
            mQuote = c;
            return false;
          }
          at = __builtin_ctzll(closing) + 1;
        }
        break;
      }
      case State::kOtherMarkup: {
        const uint64_t next = From(quotesAndCloses, at);
        if (!next) return false;
        at = __builtin_ctzll(next);
        ActInsideMarkup(window[at++]);
        break;
      }
      case State::kQuoted:
      case State::kOtherQuoted: {
        const uint64_t next = From(mQuote == '"' ? doubleQuotes : singleQuotes, at);
        if (!next) return false;
        at = __builtin_ctzll(next) + 1;
        mState = mState == State::kQuoted ? State::kStartTag : State::kOtherMarkup;
        break;
      }
      default:
        Step(window[at++]);
    }
  }
  return false;
}

void AttributeCounter::ActInsideMarkup(char c) {
  if (c == '>') {
    mState = State::kText;
  } else if (c == '"' || c == '\'') {
    mState = mState == State::kStartTag ? State::kQuoted : State::kOtherQuoted;
    mQuote = c;
  }
}

void AttributeCounter::Step(char c) {
  // UTF-16 writes markup characters beside a zero byte; skipping zeros reads it like UTF-8.
  if (c == '\0') return;
  switch (mState) {
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
        ActInsideMarkup(c);
      }
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
    default:
      // Character data, tags and quoted values are crossed by ScanWindow.
      break;
  }
}

}  // namespace zylsdk
