#include "reader/dom/list_length.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "reader/dom/numbers.h"

namespace zylsdk {
namespace {

// The first integer of an attribute's text, read as the reader reads integers; 0 when absent.
int64_t IntegerAttribute(const char* text) {
  if (!text) return 0;
  return std::max(0, strtoint(&text));
}

// Vertices announced by the siblings before `list`, and the stride of their inputs.
size_t IndicesAnnounced(const DaeElement& list) {
  const DaeElement* parent = list.Parent();
  if (!parent) return 0;
  const std::string_view kind = parent->Name();
  int64_t vertices = 0;
  if (kind == "triangles") vertices = 3 * IntegerAttribute(parent->FindAttribute("count"));
  if (kind == "lines") vertices = 2 * IntegerAttribute(parent->FindAttribute("count"));
  int64_t stride = 1;
  for (const DaeElement* sibling = parent->FirstChild(); sibling && sibling != &list; sibling = sibling->NextSibling()) {
    if (std::strcmp(sibling->Name(), "input") == 0) {
      stride = std::max(stride, IntegerAttribute(sibling->FindAttribute("offset")) + 1);
    } else if (std::strcmp(sibling->Name(), "vcount") == 0 && sibling->Values()) {
      vertices = 0;
      for (const int count : sibling->Values()->ints) vertices += std::max(0, count);
    }
  }
  // Both factors are bounded by the document, but their product is only a guess.
  const int64_t kLargest = int64_t{1} << 40;
  return static_cast<size_t>(std::min(kLargest, std::min(vertices, kLargest) * std::min(stride, kLargest >> 20)));
}

}  // namespace

size_t ExpectedListLength(const DaeElement& list) {
  if (const char* count = list.FindAttribute("count")) return static_cast<size_t>(IntegerAttribute(count));
  const std::string_view name = list.Name();
  if (name == "p" || name == "v") return IndicesAnnounced(list);
  // One count per polygon of a polylist, per vertex of a skin's weights: the parent's count.
  const DaeElement* parent = list.Parent();
  if (name == "vcount" && parent) return static_cast<size_t>(IntegerAttribute(parent->FindAttribute("count")));
  return 0;
}

}  // namespace zylsdk
