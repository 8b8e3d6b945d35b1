#include "reader/nodes/element_numbers.h"

#include "reader/dom/dom.h"
#include "reader/dom/numbers.h"

namespace zylsdk {

void ReadElementNumbers(const DaeElement* element, double* values, int count) {
  ElementText text(element);
  const char* cursor = text.c_str();
  for (int i = 0; i < count; ++i) values[i] = strtodouble(&cursor);
}

double ReadElementNumber(const DaeElement* element) {
  double value = 0.0;
  ReadElementNumbers(element, &value, 1);
  return value;
}

}  // namespace zylsdk
