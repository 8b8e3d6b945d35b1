#pragma once
// The reader's own document tree: compact and read-only. Element and attribute names are
// interned, attributes stay with their element, and every element knows its line and its
// place in document order. The text of number and name lists (float_array, int_array, p, v,
// vcount, the matrices, Name_array, IDREF_array, SID_array) is held only as the values it was
// converted to while the document streamed in; other elements keep their own text.
//
// A DaeDocument owns its elements; pointers to them stay valid as long as it lives.

#include <cstdint>
#include <deque>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kit/memory_advice.h"
#include "reader/dom/id_index.h"
#include "reader/dom/aligned_pages.h"
#include "reader/dom/streamed_values.h"

namespace zylsdk {

class DaeDocument;

// A name as the document keeps it, interned: equal names are one DaeName. It knows whether an
// element of that name is a list, so that a start tag asks nothing of the name's characters.
struct DaeName {
  std::string_view text;  // the document's copy, NUL-terminated
  bool isList = false;
  ValueKind listKind = ValueKind::kDoubles;
};

// Whether two element or attribute names are equal. Names are a few letters long: comparing
// them in place costs less than calling the library's comparison, which readers of nodes and
// attributes do millions of times.
inline bool SameName(const char* a, const char* b) {
  while (*a != '\0' && *a == *b) ++a, ++b;
  return *a == *b;
}

class DaeElement {
 public:
  const char* Name() const { return mName; }
  // The line of the document where the element's start tag ends.
  int Line() const { return static_cast<int>(mLine); }
  DaeElement* Parent() const;
  // The first child is the element that follows in document order, when it is a child.
  DaeElement* FirstChild() const;
  DaeElement* NextSibling() const;
  const DaeDocument& Document() const;

  // The value of the attribute `name` (NUL-terminated, held by the document); null when it is
  // absent. The attributes are those written, followed by any default a DTD declares for them.
  const char* FindAttribute(const char* name) const;

  // The text directly inside the element (children's text excluded), NUL-terminated; "" for
  // a list element, whose text became its values.
  std::string_view OwnText() const { return mHoldsValues ? std::string_view() : std::string_view(mText, mTextLength); }
  // Where each child starts in its parent's own text, so that mixed content can be put back
  // together in order.
  uint32_t PositionInParentText() const { return mPositionInParentText; }
  // The converted list, or null for an element that is not a list.
  const StreamedValues* Values() const { return mHoldsValues ? mValues : nullptr; }

  // Document order: an element's descendants are the elements numbered after it, up to
  // (not including) its DescendantsEnd(), which is known once the document is complete: the
  // number of the next sibling of the element or of its nearest ancestor that has one.
  uint32_t Order() const;
  uint32_t DescendantsEnd() const;

 private:
  friend class DaeTreeBuilder;
  friend class DaeDocument;

  using Pages = AlignedPages<DaeElement, DaeDocument>;

  // A document holds many elements: each is kept to 48 bytes. Its document and its number in
  // document order are those of its page (see aligned_pages.h); its parent and its next sibling
  // are given by their distance from it in document order (0: none), half a pointer each.
  const char* mName = "";
  // The attributes lie back to back, in order, each as its interned name (a pointer), the
  // length of its value (4 bytes), the value and a NUL, unaligned: no byte is padding.
  const char* mAttributes = nullptr;
  // A list element keeps its values and no text; any other element its text.
  union {
    const char* mText = "";
    const StreamedValues* mValues;
  };
  uint32_t mParentDistance = 0;
  uint32_t mNextSiblingDistance = 0;
  uint32_t mAttributeCount = 0;
  uint32_t mTextLength = 0;
  uint32_t mPositionInParentText = 0;
  uint32_t mLine : 31;
  uint32_t mHoldsValues : 1;

  static constexpr size_t kAttributeHeaderBytes = sizeof(const char*) + sizeof(uint32_t);
  // The room of one attribute whose value has `valueLength` characters.
  static constexpr size_t AttributeBytes(size_t valueLength) { return kAttributeHeaderBytes + valueLength + 1; }
  // Writes one attribute at `room` (AttributeBytes of its value); the stored value.
  static const char* WriteAttribute(char* room, const char* name, std::string_view value);
};

class DaeDocument {
 public:
  DaeDocument() : mElements(this) {}
  DaeDocument(const DaeDocument&) = delete;
  DaeDocument& operator=(const DaeDocument&) = delete;
  ~DaeDocument();

  // The bytes the parser read to build the document.
  size_t InputBytes() const { return mInputBytes; }
  void SetInputBytes(size_t bytes) { mInputBytes = bytes; }

  // The root element; null for a document without elements.
  DaeElement* Root() const { return mElements.empty() ? nullptr : const_cast<DaeElement*>(&mElements.front()); }
  size_t ElementCount() const { return mElements.size(); }
  // The element numbered `order` in document order.
  DaeElement* ElementAt(uint32_t order) const { return const_cast<DaeElement*>(&mElements[order]); }
  // The elements whose "id" attribute is `id`, in document order; empty when there is none.
  DaeElementSpan ElementsWithId(std::string_view id) const;

  // Gives back the memory of the lists of `element` and of its descendants, for a part of the
  // document that is read for good: those lists read as empty from then on.
  void ReleaseLists(const DaeElement& element);
  // Gives back the memory of the first `count` values of the list `list` (whole pages of it),
  // for a list whose reader reads it once, in order: those values read as 0 from then on.
  void ReleaseListFront(const DaeElement& list, size_t count);

 private:
  friend class DaeTreeBuilder;
  friend class DaeElement;

  // Storage that never moves: names, attributes and texts point into it. `alignment` is a
  // power of two.
  char* Allocate(size_t bytes, size_t alignment);

  AlignedPages<DaeElement, DaeDocument> mElements;
  std::deque<StreamedValues> mValues;
  std::vector<LargeBlock> mBlocks;
  size_t mInputBytes = 0;
  size_t mBlockUsed = 0;
  size_t mBlockSize = 0;
  size_t mBlockBytes = 0;  // the room of every shared block so far
  WriteAhead mAhead;       // over the last shared block
  std::unordered_map<std::string_view, DaeName> mNames;
  IdIndex mIds;
};

static_assert(sizeof(void*) != 8 || sizeof(DaeElement) == 48, "an element grew");

inline const DaeDocument& DaeElement::Document() const { return Pages::OwnerOf(this); }

inline uint32_t DaeElement::Order() const { return static_cast<uint32_t>(Pages::PositionOf(this)); }

inline DaeElement* DaeElement::Parent() const {
  return mParentDistance ? Pages::Near(this, -static_cast<ptrdiff_t>(mParentDistance)) : nullptr;
}

inline DaeElement* DaeElement::NextSibling() const {
  return mNextSiblingDistance ? Pages::Near(this, mNextSiblingDistance) : nullptr;
}

// Asked of the next element rather than of DescendantsEnd, which is known only once the document
// is complete: the tree's builder looks at the children of elements still open.
inline DaeElement* DaeElement::FirstChild() const {
  const DaeElement* next = Document().mElements.After(this);
  return next && next->mParentDistance == 1 ? const_cast<DaeElement*>(next) : nullptr;
}

using DaeDocumentPtr = std::unique_ptr<DaeDocument>;

}  // namespace zylsdk
