#include "reader/dom/attribute_counter.h"

#include <cstddef>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zylsdk {

namespace {

// The bytes that can change the state inside a start tag or other markup; any other byte there
// is passed over without a look.
bool ActsInsideMarkup(char c) { return c == '=' || c == '"' || c == '\'' || c == '>'; }

// Start tags, attribute values and the text between tags are mostly a few bytes long: the first
// sixteen bytes are looked at together before a longer search takes over.
constexpr ptrdiff_t kBlock = 16;

// The first byte equal to `wanted` in [at, end), or null.
const char* FindByte(const char* at, const char* end, char wanted) {
#if defined(__SSE2__)
  if (end - at >= kBlock) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const int hits = _mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8(wanted)));
    if (hits) return at + __builtin_ctz(static_cast<unsigned>(hits));
    at += kBlock;
  }
#endif
  return static_cast<const char*>(std::memchr(at, wanted, static_cast<size_t>(end - at)));
}

// The first byte that acts inside markup in [at, end), or `end`.
const char* FindMarkupByte(const char* at, const char* end) {
#if defined(__SSE2__)
  for (; end - at >= kBlock; at += kBlock) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const __m128i equals = _mm_cmpeq_epi8(block, _mm_set1_epi8('='));
    const __m128i quotes =
        _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('"')), _mm_cmpeq_epi8(block, _mm_set1_epi8('\'')));
    const __m128i closes = _mm_cmpeq_epi8(block, _mm_set1_epi8('>'));
    const int hits = _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(equals, quotes), closes));
    if (hits) return at + __builtin_ctz(static_cast<unsigned>(hits));
  }
#endif
  while (at < end && !ActsInsideMarkup(*at)) ++at;
  return at;
}

}  // namespace

bool AttributeCounter::Scan(const char* bytes, size_t count) {
  const char* at = bytes;
  const char* const end = bytes + count;
  // Nearly all of a document is character data, names and quoted values: each is crossed in one
  // step, up to the next byte that acts, and the steps that follow are taken here; the rest of
  // the markup goes through Step a byte at a time.
  while (at < end && !mExceeded) {
    switch (mState) {
      case State::kText:
      case State::kQuoted:
      case State::kOtherQuoted: {
        const char* found = FindByte(at, end, mState == State::kText ? '<' : mQuote);
        if (!found) return true;
        at = found + 1;
        mState = mState == State::kText ? State::kOpened
                 : mState == State::kQuoted ? State::kStartTag
                                            : State::kOtherMarkup;
        break;
      }
      case State::kStartTag:
      case State::kOtherMarkup: {
        at = FindMarkupByte(at, end);
        if (at == end) return true;
        ActInsideMarkup(*at++);
        break;
      }
      default:
        Step(*at++);
    }
  }
  return !mExceeded;
}

void AttributeCounter::ActInsideMarkup(char c) {
  const bool inStartTag = mState == State::kStartTag;
  if (c == '>') {
    mState = State::kText;
  } else if (c == '"' || c == '\'') {
    mState = inStartTag ? State::kQuoted : State::kOtherQuoted;
    mQuote = c;
  } else if (c == '=' && inStartTag) {
    mExceeded = ++mAttributes > mMaxAttributes;
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
      // Character data, tags and quoted values are crossed by Scan.
      break;
  }
}

}  // namespace zylsdk
