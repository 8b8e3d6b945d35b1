#pragma once
// How many values a list element is likely to hold, so that its values are allocated once
// instead of growing (every growth copies them and touches new memory).

#include <cstddef>

#include "reader/dom/element.h"

namespace zylsdk {

// The list's "count" attribute when it has one. Otherwise, for the index list of a primitive or
// of skin weights (`p`, `v`), what the elements before it announce: its vertices (three per
// triangle and two per line of the parent's "count", or the sum of a `vcount` sibling) times the
// stride of the `input` siblings; for a `vcount`, its parent's "count" (polygons of a polylist,
// vertices of a skin's weights). 0 when nothing tells. Only a guess: the caller bounds it, and
// the text may hold more or fewer values.
size_t ExpectedListLength(const DaeElement& list);

}  // namespace zylsdk
