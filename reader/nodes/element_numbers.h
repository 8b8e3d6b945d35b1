#pragma once
// Numbers written as the text of one element (`translate`, `rotate`, `lookat`, a camera or
// light parameter), read without copying the text.

#include "reader/dom/dom.h"

namespace zylsdk {

// Reads `count` numbers from the element's text into `values`; numbers missing at the end of
// the text read as 0.
void ReadElementNumbers(const DaeElement* element, double* values, int count);
// The first number of the element's text; 0 when there is none.
double ReadElementNumber(const DaeElement* element);

}  // namespace zylsdk
