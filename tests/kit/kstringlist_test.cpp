// KStringList: insertion order, and lookups that answer exactly what a front-to-back scan
// answers, also after removals and insertions in the middle.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "kit/kstringlist.h"

namespace {

using zylsdk::KString;
using zylsdk::KStringList;

// The list as a plain vector, searched front to back: the reference the index must match.
class ScannedList {
 public:
  void Add(const std::string& key, intptr_t reference) { mEntries.emplace_back(key, reference); }
  void InsertAt(int index, const std::string& key, intptr_t reference) {
    int count = static_cast<int>(mEntries.size());
    int at = index < 0 ? 0 : (index > count ? count : index);
    mEntries.insert(mEntries.begin() + at, {key, reference});
  }
  void RemoveAt(int index) {
    if (index >= 0 && index < static_cast<int>(mEntries.size())) mEntries.erase(mEntries.begin() + index);
  }
  int Find(const std::string& key) const {
    for (size_t i = 0; i < mEntries.size(); ++i)
      if (mEntries[i].first == key) return static_cast<int>(i);
    return -1;
  }
  const std::vector<std::pair<std::string, intptr_t>>& Entries() const { return mEntries; }

 private:
  std::vector<std::pair<std::string, intptr_t>> mEntries;
};

void ExpectSameAsScan(const KStringList& list, const ScannedList& scanned, const std::vector<std::string>& keys) {
  ASSERT_EQ(list.GetCount(), static_cast<int>(scanned.Entries().size()));
  for (int i = 0; i < list.GetCount(); ++i) {
    EXPECT_EQ(list.GetStringAt(i).Std(), scanned.Entries()[static_cast<size_t>(i)].first) << "entry " << i;
    EXPECT_EQ(list.GetReferenceAt(i), scanned.Entries()[static_cast<size_t>(i)].second) << "entry " << i;
  }
  for (const std::string& key : keys) EXPECT_EQ(list.Find(key.c_str()), scanned.Find(key)) << "key " << key;
}

TEST(KStringList, FirstMatchWinsAmongEqualKeys) {
  KStringList list;
  EXPECT_EQ(list.Add("geo", 10), 0);
  EXPECT_EQ(list.Add("mat", 20), 1);
  EXPECT_EQ(list.Add("geo", 30), 2);
  EXPECT_EQ(list.Find("geo"), 0);
  EXPECT_EQ(list.GetReferenceAt(list.Find("geo")), 10);
  EXPECT_EQ(list.Find("mat"), 1);
  EXPECT_EQ(list.Find("GEO"), -1);  // case-sensitive
  EXPECT_EQ(list.Find("ge"), -1);   // whole key only
  EXPECT_EQ(list.Find(""), -1);
}

TEST(KStringList, RemovingTheFirstMatchUncoversTheNextOne) {
  KStringList list;
  list.Add("a", 1);
  list.Add("b", 2);
  list.Add("a", 3);
  list.Add("a", 4);
  list.RemoveAt(0);
  EXPECT_EQ(list.Find("a"), 1);
  EXPECT_EQ(list.GetReferenceAt(1), 3);
  list.RemoveAt(1);
  EXPECT_EQ(list.Find("a"), 1);
  EXPECT_EQ(list.GetReferenceAt(1), 4);
  list.RemoveAt(1);
  EXPECT_EQ(list.Find("a"), -1);
  EXPECT_EQ(list.Find("b"), 0);
}

TEST(KStringList, InsertingInTheMiddleBeforeTheFirstMatchTakesItsPlace) {
  KStringList list;
  list.Add("x", 1);
  list.Add("key", 2);
  list.Add("y", 3);
  EXPECT_EQ(list.InsertAt(1, "key", 9), 1);
  EXPECT_EQ(list.Find("key"), 1);
  EXPECT_EQ(list.GetReferenceAt(1), 9);
  // Inserted after the first match, it does not change the answer.
  EXPECT_EQ(list.InsertAt(3, "key", 7), 3);
  EXPECT_EQ(list.Find("key"), 1);
  EXPECT_EQ(list.Find("y"), 4);
  // Appending after an insertion keeps the order.
  EXPECT_EQ(list.Add("z", 5), 5);
  EXPECT_EQ(list.Find("z"), 5);
}

TEST(KStringList, InsertAtClampsItsIndex) {
  KStringList list;
  list.Add("a", 1);
  EXPECT_EQ(list.InsertAt(-3, "a", 2), 0);
  EXPECT_EQ(list.GetReferenceAt(list.Find("a")), 2);
  EXPECT_EQ(list.InsertAt(99, "b", 3), 2);
  EXPECT_EQ(list.InsertAt(list.GetCount(), "c", 4), 3);
  EXPECT_EQ(list.GetStringAt(3), "c");
}

TEST(KStringList, OutOfRangeAccessIsHarmless) {
  KStringList list;
  list.Add("a", 5);
  list.RemoveAt(-1);
  list.RemoveAt(1);
  EXPECT_EQ(list.GetCount(), 1);
  EXPECT_EQ(list.GetStringAt(-1), "");
  EXPECT_EQ(list.GetStringAt(1), "");
  EXPECT_EQ(list.GetReferenceAt(7), 0);
  list.SetReferenceAt(3, 9);
  list.SetReferenceAt(0, 6);
  EXPECT_EQ(list.GetReferenceAt(0), 6);
  list.Clear();
  EXPECT_EQ(list.GetCount(), 0);
  EXPECT_EQ(list.Find("a"), -1);
  EXPECT_EQ(list.Add("a", 1), 0);
  EXPECT_EQ(list.Find("a"), 0);
}

TEST(KStringList, SameAnswersAsAScanUnderRandomEdits) {
  const std::vector<std::string> keys = {"a", "b", "c", "d", "", "A"};
  std::mt19937 random(20240611);
  KStringList list;
  ScannedList scanned;
  for (int step = 0; step < 3000; ++step) {
    const std::string& key = keys[random() % keys.size()];
    intptr_t reference = step;
    int count = list.GetCount();
    switch (random() % 5) {
      case 0:
      case 1:
        list.Add(key.c_str(), reference);
        scanned.Add(key, reference);
        break;
      case 2: {
        int index = static_cast<int>(random() % static_cast<unsigned>(count + 3)) - 1;
        list.InsertAt(index, key.c_str(), reference);
        scanned.InsertAt(index, key, reference);
        break;
      }
      case 3: {
        int index = static_cast<int>(random() % static_cast<unsigned>(count + 2)) - 1;
        list.RemoveAt(index);
        scanned.RemoveAt(index);
        break;
      }
      default:
        if (count > 40) {
          // Keep the list short enough for every kind of edit to meet duplicates.
          for (int i = 0; i < 20; ++i) {
            list.RemoveAt(0);
            scanned.RemoveAt(0);
          }
        }
        break;
    }
    ExpectSameAsScan(list, scanned, keys);
    if (HasFailure()) return;
  }
}

}  // namespace
