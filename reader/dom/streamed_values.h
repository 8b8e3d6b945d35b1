#pragma once
// Converts the text of a number or name list while it arrives in pieces, so that the text
// itself is never kept: the pieces are read as if they had been joined first. Only an item
// cut by the end of a piece waits, in a small buffer, for the rest of its characters.

#include <string>
#include <vector>

#include "kit/kstring.h"
#include "kit/memory_advice.h"

namespace zylsdk {

// What a list element holds once its text is read.
enum class ValueKind { kDoubles, kInts, kWords };

// The values read so far, of the kind chosen at construction.
struct StreamedValues {
  ValueKind kind;
  std::vector<double> doubles;
  std::vector<int> ints;
  std::vector<KString> words;
};

class ValueStream {
 public:
  // `reserve` is how many values are expected (already bounded by the caller).
  ValueStream(ValueKind kind, size_t reserve);
  // Reads the next piece of the text.
  void Append(const char* text, size_t length);
  // Reads the item cut at the end of the last piece, if any, and hands over the values.
  StreamedValues Finish();

 private:
  bool Separates(char c) const;
  void Convert(const char* begin, const char* end);

  StreamedValues mValues;
  std::string mCutItem;
  WriteAhead mAhead;
};

}  // namespace zylsdk
