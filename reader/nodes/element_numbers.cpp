#include "reader/nodes/element_numbers.h"

#include "reader/dom/dom.h"
#include "reader/dom/numbers.h"

namespace zylsdk {

void ReadElementNumbers(const DaeElement* element, double* values, int count) {
  ElementText text(element);
  NumberReader reader(text.c_str());
  // Numbers missing at the end of the text read as 0.
  for (int i = 0; i < count; ++i)
    if (!reader.Next(values[i])) values[i] = 0.0;
}

double ReadElementNumber(const DaeElement* element) {
  double value = 0.0;
  ReadElementNumbers(element, &value, 1);
  return value;
}

}  // namespace zylsdk
