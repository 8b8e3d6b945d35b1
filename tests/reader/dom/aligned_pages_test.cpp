// The pages that hold a document's elements: items stay where they were made, and each one finds
// its owner, its position and the item after it from its own address, across pages and runs.

#include "reader/dom/aligned_pages.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

using zylsdk::AlignedPages;

struct Owner {
  int tag = 0;
};

struct Item {
  uint64_t value = 0;
  uint64_t padding[4] = {};
};

using Pages = AlignedPages<Item, Owner>;

TEST(AlignedPages, ItemsKnowTheirOwnerAndPositionAcrossPagesAndRuns) {
  Owner owner;
  Pages pages(&owner);
  // Enough items for many pages, and for runs of every size up to the largest.
  const size_t count = 80 * Pages::kPerPage + 7;
  std::vector<const Item*> made;
  for (size_t i = 0; i < count; ++i) {
    Item& item = pages.emplace_back();
    EXPECT_EQ(item.value, 0u);
    item.value = i;
    made.push_back(&item);
  }
  ASSERT_EQ(pages.size(), count);
  EXPECT_EQ(&pages.front(), made.front());
  for (size_t i = 0; i < count; ++i) {
    ASSERT_EQ(&pages[i], made[i]) << i;
    ASSERT_EQ(made[i]->value, i);
    ASSERT_EQ(Pages::PositionOf(made[i]), i);
    ASSERT_EQ(&Pages::OwnerOf(made[i]), &owner);
    ASSERT_EQ(pages.After(made[i]), i + 1 < count ? made[i + 1] : nullptr) << i;
  }
}

TEST(AlignedPages, TheLastItemOfAPageIsFollowedByTheFirstOfTheNext) {
  Owner owner;
  Pages pages(&owner);
  for (size_t i = 0; i < Pages::kPerPage; ++i) pages.emplace_back();
  const Item* last = &pages[Pages::kPerPage - 1];
  EXPECT_EQ(pages.After(last), nullptr);
  const Item& first = pages.emplace_back();
  EXPECT_EQ(pages.After(last), &first);
  EXPECT_NE(&first, last + 1);
  EXPECT_EQ(Pages::PositionOf(&first), Pages::kPerPage);
}

TEST(AlignedPages, AnEmptySequenceHasNoItems) {
  Owner owner;
  Pages pages(&owner);
  EXPECT_TRUE(pages.empty());
  EXPECT_EQ(pages.size(), 0u);
}

}  // namespace
