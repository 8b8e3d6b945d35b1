#pragma once
// The elements of a document by their "id" attribute, filled while the document streams in.
// A document of a hundred thousand nodes has a hundred thousand ids: each takes one slot of an
// open-addressed table (an element and the hash of its id), and a list is made only for an id
// that several elements share.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zylsdk {

class DaeElement;

// Elements in document order, as a range.
struct DaeElementSpan {
  DaeElement* const* data = nullptr;
  size_t size = 0;
  DaeElement* const* begin() const { return data; }
  DaeElement* const* end() const { return data + size; }
  bool empty() const { return size == 0; }
};

class IdIndex {
 public:
  // `element`, whose "id" attribute is `id`, comes after every element added before.
  void Add(std::string_view id, DaeElement* element);
  // The elements whose id is `id`, in document order; empty when there is none. The range stays
  // valid until the next Add.
  DaeElementSpan Find(std::string_view id) const;

 private:
  struct Slot {
    DaeElement* element = nullptr;  // the first with the id; null for a free slot
    uint32_t hash = 0;
    bool several = false;  // then all of them are in mSeveral
  };

  // The slot that holds `id`, or the free slot where it would go.
  size_t SlotOf(std::string_view id, uint32_t hash) const;
  void Grow();

  std::vector<Slot> mSlots;  // a power of two of them, at most half in use
  size_t mUsed = 0;
  std::unordered_map<const DaeElement*, std::vector<DaeElement*>> mSeveral;  // by the first element
};

}  // namespace zylsdk
