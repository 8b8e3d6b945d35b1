#pragma once
// The elements of a document by their "id" attribute, gathered while the document streams in
// and indexed once it has arrived. A document of a hundred thousand nodes has a hundred thousand
// ids: each takes one slot of an open-addressed table (an element and the hash of its id), and a
// list is made only for an id that several elements share. The table is filled in one pass,
// sized once, each slot fetched from memory a few ids ahead of its use: slots are scattered over
// megabytes, and filling them as the ids came waited on memory at every one.

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
  // `element`, whose "id" attribute is `id`, comes after every element added before. `id` must
  // stay where it is: the index reads it again when it is built.
  void Add(std::string_view id, DaeElement* element);
  // Indexes the elements added since the last build.
  void Build();
  // The elements whose id is `id`, in document order, among those added before the last build;
  // empty when there is none. The range stays valid until the next build.
  DaeElementSpan Find(std::string_view id) const;

 private:
  struct Slot {
    DaeElement* element = nullptr;  // the first with the id; null for a free slot
    uint32_t hash = 0;
    bool several = false;  // then all of them are in mSeveral
  };

  struct Added {
    DaeElement* element;
    const char* id;
    uint32_t idLength;
    uint32_t hash;
  };

  // The slot that holds `id`, or the free slot where it would go.
  size_t SlotOf(std::string_view id, uint32_t hash) const;
  // Makes the table `slots` long (a power of two), moving the slots in use.
  void Resize(size_t slots);
  void Insert(const Added& added);

  std::vector<Added> mAdded;  // since the last build, in document order
  std::vector<Slot> mSlots;   // a power of two of them, at most half in use
  size_t mUsed = 0;
  std::unordered_map<const DaeElement*, std::vector<DaeElement*>> mSeveral;  // by the first element
};

}  // namespace zylsdk
