#pragma once
// Numbers in COLLADA text. They are read in the C locale whatever the process locale is,
// without allocating, and never past the end of the text (its terminating NUL).

#include <vector>

#include "kit/karray.h"
#include "kit/kmath.h"
#include "kit/kstring.h"

namespace zylsdk {

// Reads the next number after any white space and commas, and moves the cursor past it and the
// separators that follow. Characters that cannot start a number are passed over. At the end of
// the text it gives 0. "nan", "inf" and "infinity" are numbers.
double strtodouble(const char** cursor);
// The same for an integer; a leading "." is also passed over (so ".4" reads as 4). Values
// beyond the int range saturate.
int strtoint(const char** cursor);
// Appends every integer of the text, in order, passing over anything that cannot start one.
void strtoints(const char* text, KArrayTemplate<int>& out);
// The same three readings over the characters [begin, end), appended to `out`: integers as
// strtoints reads them, floating-point numbers as ParseDoubles does, and the words of a name
// list (split at spaces, tabs and line ends). A text cut anywhere between two characters that
// separate its items reads the same in pieces as in one.
void AppendInts(const char* begin, const char* end, std::vector<int>& out);
void AppendDoubles(const char* begin, const char* end, std::vector<double>& out);
void AppendWords(const char* begin, const char* end, std::vector<KString>& out);
// Red, green, blue and alpha; a missing alpha is 1, other missing components 0.
KZylColor strtocolor(const char* text);
// Sixteen numbers as COLLADA writes a matrix (by rows, translation in the fourth column):
// value 4r+c goes to the kit's row c, column r. Missing numbers are taken from the identity.
// Moves the cursor past what it read.
void strtomatrix(const char*& cursor, KZylXMatrix& out);

// Reads numbers one by one and tells when the text is exhausted.
class NumberReader {
 public:
  explicit NumberReader(const char* text) : mCursor(text ? text : "") {}
  // The next number; false (value untouched) at the end of the text.
  bool Next(double& value);
  bool NextInt(int& value);
  const char* Cursor() const { return mCursor; }

 private:
  const char* mCursor;
};

// Appends every number of the text to `out`. `expected`, the number of values the document
// announces, is used only to allocate once (never beyond what the text can hold).
void ParseDoubles(const char* text, std::vector<double>& out, size_t expected = 0);

}  // namespace zylsdk
