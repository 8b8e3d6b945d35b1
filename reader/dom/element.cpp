#include "reader/dom/element.h"

#include <algorithm>
#include <cstring>

namespace zylsdk {
namespace {

// Texts and attribute lists are carved out of blocks that grow with the document (each a quarter
// of the blocks before it, within bounds), so that a small document takes little, a large one is
// held in few large blocks, and at most a fifth of the room waits unused; an item of more than a
// quarter of a block gets a block of its own.
constexpr size_t kFirstBlockSize = 64 * 1024;
constexpr size_t kLargestBlockSize = 16 * 1024 * 1024;

}  // namespace

const char* DaeElement::WriteAttribute(char* room, const char* name, std::string_view value) {
  const uint32_t length = static_cast<uint32_t>(value.size());
  std::memcpy(room, &name, sizeof name);
  std::memcpy(room + sizeof name, &length, sizeof length);
  char* stored = room + kAttributeHeaderBytes;
  std::memcpy(stored, value.data(), length);
  stored[length] = '\0';
  return stored;
}

const char* DaeElement::FindAttribute(const char* name) const {
  const char* record = mAttributes;
  for (uint32_t i = 0; i < mAttributeCount; ++i) {
    const char* recordName;
    uint32_t length;
    std::memcpy(&recordName, record, sizeof recordName);
    std::memcpy(&length, record + sizeof recordName, sizeof length);
    if (SameName(recordName, name)) return record + kAttributeHeaderBytes;
    record += AttributeBytes(length);
  }
  return nullptr;
}

uint32_t DaeElement::DescendantsEnd() const {
  for (const DaeElement* element = this; element; element = element->Parent())
    if (element->mNextSiblingDistance) return element->Order() + element->mNextSiblingDistance;
  return static_cast<uint32_t>(Document().ElementCount());
}

DaeDocument::~DaeDocument() = default;

DaeElementSpan DaeDocument::ElementsWithId(std::string_view id) const { return mIds.Find(id); }

void DaeDocument::ReleaseLists(const DaeElement& element) {
  const uint32_t end = element.DescendantsEnd();
  for (uint32_t order = element.Order(); order < end; ++order) {
    const DaeElement& list = mElements[order];
    if (!list.mHoldsValues) continue;
    // The document owns its lists; its readers see them as const.
    StreamedValues& values = const_cast<StreamedValues&>(*list.mValues);
    std::vector<double>().swap(values.doubles);
    std::vector<int>().swap(values.ints);
    std::vector<KString>().swap(values.words);
  }
}

void DaeDocument::ReleaseListFront(const DaeElement& list, size_t count) {
  if (!list.mHoldsValues) return;
  // The document owns its lists; its readers see them as const.
  StreamedValues& values = const_cast<StreamedValues&>(*list.mValues);
  auto front = [count](auto& items) { GiveBackPages(items.data(), std::min(count, items.size()) * sizeof(items[0])); };
  switch (values.kind) {
    case ValueKind::kDoubles: front(values.doubles); break;
    case ValueKind::kInts: front(values.ints); break;
    // A word owns its characters elsewhere: its own memory is not given back before it is freed.
    case ValueKind::kWords: break;
  }
}

char* DaeDocument::Allocate(size_t bytes, size_t alignment) {
  // Alignments are powers of two: a mask rounds up without a division.
  size_t start = (mBlockUsed + alignment - 1) & ~(alignment - 1);
  if (mBlocks.empty() || start + bytes > mBlockSize) {
    const size_t blockSize = std::clamp(mBlockBytes / 4, kFirstBlockSize, kLargestBlockSize);
    if (bytes > blockSize / 4) {
      // A large item gets a block of its own, kept behind the current one.
      mBlocks.emplace_back(bytes);
      char* own = mBlocks.back().data();
      PrepareForWriting(own, bytes);
      if (mBlocks.size() > 1) std::swap(mBlocks.back(), mBlocks[mBlocks.size() - 2]);
      return own;
    }
    mBlocks.push_back(LargeBlock::ForSlab(bytes, blockSize));
    mBlockSize = mBlocks.back().size();
    mBlockBytes += mBlockSize;
    start = 0;
  }
  // What is allocated here is written at once.
  mAhead.Before(mBlocks.back().data(), 0, start + bytes, mBlockSize);
  mBlockUsed = start + bytes;
  return mBlocks.back().data() + start;
}

}  // namespace zylsdk
