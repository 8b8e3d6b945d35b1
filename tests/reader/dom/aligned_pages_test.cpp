// The pages that hold a document's elements: items stay where they were made, and each one finds
// its owner, its position, the item after it and any item at a distance from its own address,
// across pages and runs.

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

TEST(AlignedPages, ItemsAtADistanceAreFoundWithinAndAcrossPages) {
  Owner owner;
  Pages pages(&owner);
  const size_t count = 3 * Pages::kPerPage + 5;
  std::vector<const Item*> made;
  for (size_t i = 0; i < count; ++i) made.push_back(&pages.emplace_back());
  // The first and last items of pages, their neighbours, and items inside pages: a distance that
  // ends next to a page's header or its unused last bytes must still cross to the right page.
  std::vector<size_t> positions = {0, 1, 2, count / 2, count - 2, count - 1};
  for (size_t page = 1; page <= 3; ++page)
    for (size_t position : {page * Pages::kPerPage - 2, page * Pages::kPerPage - 1, page * Pages::kPerPage,
                            page * Pages::kPerPage + 1})
      if (position < count) positions.push_back(position);
  for (size_t from : positions)
    for (size_t to : positions) {
      const ptrdiff_t distance = static_cast<ptrdiff_t>(to) - static_cast<ptrdiff_t>(from);
      ASSERT_EQ(Pages::Near(made[from], distance), made[to]) << from << " -> " << to;
    }
}

TEST(AlignedPages, AnEmptySequenceHasNoItems) {
  Owner owner;
  Pages pages(&owner);
  EXPECT_TRUE(pages.empty());
  EXPECT_EQ(pages.size(), 0u);
}

}  // namespace
