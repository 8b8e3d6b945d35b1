#include "reader/dom/element.h"

#include <cstring>

namespace zylsdk {
namespace {

// Texts and attribute lists are carved out of blocks of this size; larger ones get their own.
constexpr size_t kBlockSize = 64 * 1024;

}  // namespace

const char* DaeElement::FindAttribute(const char* name) const {
  for (uint32_t i = 0; i < mAttributeCount; ++i)
    if (std::strcmp(mAttributes[i].name, name) == 0) return mAttributes[i].value;
  return nullptr;
}

DaeDocument::~DaeDocument() = default;

const std::vector<DaeElement*>* DaeDocument::ElementsWithId(std::string_view id) const {
  auto found = mIds.find(id);
  return found == mIds.end() ? nullptr : &found->second;
}

char* DaeDocument::Allocate(size_t bytes, size_t alignment) {
  size_t start = (mBlockUsed + alignment - 1) / alignment * alignment;
  if (mBlocks.empty() || start + bytes > mBlockSize) {
    if (bytes > kBlockSize / 4) {
      // A large item gets a block of its own, kept behind the current one.
      mBlocks.emplace_back(new char[bytes]);  // not zero-filled: it is written at once
      char* own = mBlocks.back().get();
      if (mBlocks.size() > 1) std::swap(mBlocks.back(), mBlocks[mBlocks.size() - 2]);
      return own;
    }
    mBlocks.emplace_back(new char[kBlockSize]);
    mBlockSize = kBlockSize;
    start = 0;
  }
  mBlockUsed = start + bytes;
  return mBlocks.back().get() + start;
}

}  // namespace zylsdk
