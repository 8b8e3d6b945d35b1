#include "reader/dom/streamed_values.h"

#include "kit/memory_advice.h"
#include "reader/dom/numbers.h"

namespace zylsdk {

ValueStream::ValueStream(ValueKind kind, size_t reserve) {
  mValues.kind = kind;
  switch (kind) {
    case ValueKind::kDoubles: ReserveLarge(mValues.doubles, reserve); break;
    case ValueKind::kInts: ReserveLarge(mValues.ints, reserve); break;
    case ValueKind::kWords: ReserveLarge(mValues.words, reserve); break;
  }
}

// A character that no item can contain: the text on either side of it reads independently.
// A number ends at a separator; an integer also at anything that is neither a digit nor a sign.
bool ValueStream::Separates(char c) const {
  switch (mValues.kind) {
    case ValueKind::kDoubles:
      return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v' || c == ',';
    case ValueKind::kInts: return !((c >= '0' && c <= '9') || c == '+' || c == '-');
    case ValueKind::kWords: return c == ' ' || c == '\t' || c == '\n' || c == '\r';
  }
  return true;
}

void ValueStream::Convert(const char* begin, const char* end) {
  // Each item takes a character and a separator at least.
  const size_t most = static_cast<size_t>(end - begin) / 2 + 1;
  switch (mValues.kind) {
    case ValueKind::kDoubles:
      mAhead.Before(mValues.doubles, most);
      AppendDoubles(begin, end, mValues.doubles);
      break;
    case ValueKind::kInts:
      mAhead.Before(mValues.ints, most);
      AppendInts(begin, end, mValues.ints);
      break;
    case ValueKind::kWords:
      mAhead.Before(mValues.words, most);
      AppendWords(begin, end, mValues.words);
      break;
  }
}

void ValueStream::Append(const char* text, size_t length) {
  const char* end = text + length;
  const char* p = text;
  if (!mCutItem.empty()) {
    // The item cut last time goes on up to the first separator of this piece.
    while (p < end && !Separates(*p)) ++p;
    mCutItem.append(text, p);
    if (p == end) return;
    Convert(mCutItem.data(), mCutItem.data() + mCutItem.size());
    mCutItem.clear();
  }
  // Everything up to the last separator reads now; what follows it may go on in the next piece.
  const char* last = end;
  while (last > p && !Separates(last[-1])) --last;
  Convert(p, last);
  mCutItem.append(last, end);
}

StreamedValues ValueStream::Finish() {
  Convert(mCutItem.data(), mCutItem.data() + mCutItem.size());
  mCutItem.clear();
  return std::move(mValues);
}

}  // namespace zylsdk
