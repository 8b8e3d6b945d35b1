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

// How many bits of `mask` are set. The masks of a window hold few bits, and a loop keeps
// clear of the library call that __builtin_popcountll is on plain x86-64.
int CountBits(uint64_t mask) {
  int count = 0;
  for (; mask; mask &= mask - 1) ++count;
  return count;
}

// Bit i of the result is the parity of bits 0 to i of `mask`.
uint64_t PrefixParity(uint64_t mask) {
  for (int shift = 1; shift < 64; shift *= 2) mask ^= mask << shift;
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
  if (ScanPlainTags(window, opens, closes, equals, doubleQuotes, singleQuotes)) return false;
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
          mAttributes += static_cast<size_t>(CountBits(From(equals, at) & BelowLowest(next)));
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

bool AttributeCounter::ScanPlainTags(const char* window, uint64_t opens, uint64_t closes, uint64_t equals,
                                     uint64_t doubleQuotes, uint64_t singleQuotes) {
  // Tags that end inside the window hold fewer '=' than it has bytes: only the tag that goes
  // on from the last window and the one that goes on into the next can reach the maximum.
  if (mMaxAttributes < kWindow || singleQuotes) return false;
  const bool inTag = mState == State::kStartTag || mState == State::kOtherMarkup;
  const bool quoted = (mState == State::kQuoted || mState == State::kOtherQuoted) && mQuote == '"';
  if (mState != State::kText && !inTag && !quoted) return false;
  // The byte after each '<' is read as the start of a name or as '/' (an end tag): anything
  // that could open a comment, section, instruction or declaration, a '<' whose next byte is
  // in the next window, and zero bytes (UTF-16) are left to the byte-wise rules.
  const uint64_t zeros = BytesEqual(window, '\0');
  const uint64_t bangs = BytesEqual(window, '!') | BytesEqual(window, '?');
  if (zeros || (opens >> 63) || ((opens << 1) & (bangs | doubleQuotes | equals | opens | closes))) return false;
  // Taken as if every quote were in markup: then the quotes' parity says which bytes are
  // quoted, and the '<' and '>' outside quotes open and close the tags in turn. The reading is
  // the byte-wise one exactly when it agrees with itself: tags open and close in turn, and no
  // quote lies in text (a quote or '>' in text falls back).
  const uint64_t insideQuotes = PrefixParity(doubleQuotes) ^ (quoted ? ~uint64_t{0} : 0);
  const uint64_t tagOpens = opens & ~insideQuotes;
  const uint64_t tagCloses = closes & ~insideQuotes;
  const uint64_t inMarkup = PrefixParity(tagOpens | tagCloses) ^ (inTag || quoted ? ~uint64_t{0} : 0);
  if ((tagOpens & ~inMarkup) || (tagCloses & inMarkup) || (doubleQuotes & ~inMarkup)) return false;
  const uint64_t attributeSigns = equals & ~insideQuotes;
  const bool continuedStartTag = mState == State::kStartTag || mState == State::kQuoted;
  if (continuedStartTag) {
    mAttributes += static_cast<size_t>(CountBits(attributeSigns & BelowLowest(tagCloses)));
    mExceeded = mAttributes > mMaxAttributes;
    if (mExceeded) return true;
  }
  const bool markupAtEnd = (inMarkup >> 63) != 0;
  const bool quotedAtEnd = (insideQuotes >> 63) != 0;
  bool startTagAtEnd = continuedStartTag;
  if (markupAtEnd && tagOpens) {
    const int lastOpen = 63 - __builtin_clzll(tagOpens);
    startTagAtEnd = window[lastOpen + 1] != '/';
    if (startTagAtEnd) mAttributes = static_cast<size_t>(CountBits(From(attributeSigns, lastOpen + 1)));
  }
  if (!markupAtEnd) {
    mState = State::kText;
  } else if (quotedAtEnd) {
    mState = startTagAtEnd ? State::kQuoted : State::kOtherQuoted;
    mQuote = '"';
  } else {
    mState = startTagAtEnd ? State::kStartTag : State::kOtherMarkup;
  }
  return true;
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
