#pragma once
// Numbers written as the text of one element (`translate`, `rotate`, `lookat`, a camera or
// light parameter), read without copying the text.

#include <libxml/tree.h>

namespace zylsdk {

// Reads `count` numbers from the element's text into `values`; numbers missing at the end of
// the text read as 0.
void ReadElementNumbers(const xmlNode* element, double* values, int count);
// The first number of the element's text; 0 when there is none.
double ReadElementNumber(const xmlNode* element);

}  // namespace zylsdk
