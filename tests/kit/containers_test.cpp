// KArrayTemplate (bounded reads and writes), KBaseArray and KSet2.

#include <gtest/gtest.h>

#include <climits>

#include "kit/karray.h"
#include "kit/kmath.h"
#include "kit/kstring.h"

namespace {

using zylsdk::KArrayTemplate;
using zylsdk::KBaseArray;
using zylsdk::KSet2;
using zylsdk::KString;
using zylsdk::KZylColor;
using zylsdk::KZylVector4;

TEST(KArrayTemplate, GetAtOutsideGivesTheDefaultValue) {
  KArrayTemplate<int> numbers{4, 5, 6};
  EXPECT_EQ(numbers.GetAt(0), 4);
  EXPECT_EQ(numbers.GetAt(2), 6);
  EXPECT_EQ(numbers.GetAt(3), 0);
  EXPECT_EQ(numbers.GetAt(-1), 0);
  EXPECT_EQ(numbers.GetAt(INT_MAX), 0);
  EXPECT_EQ(numbers.GetAt(INT_MIN), 0);

  KArrayTemplate<KZylVector4> vectors;
  EXPECT_EQ(vectors.GetAt(0), KZylVector4(0, 0, 0, 0));
  KArrayTemplate<KZylColor> colours;
  EXPECT_EQ(colours.GetAt(5), KZylColor(0, 0, 0, 1));
  KArrayTemplate<KString> texts;
  EXPECT_EQ(texts.GetAt(1), "");
  KArrayTemplate<int*> pointers;
  EXPECT_EQ(pointers.GetAt(0), nullptr);
}

TEST(KArrayTemplate, SetAtWritesOnlyInside) {
  KArrayTemplate<int> numbers{1, 2};
  EXPECT_TRUE(numbers.SetAt(1, 9));
  EXPECT_FALSE(numbers.SetAt(2, 9));
  EXPECT_FALSE(numbers.SetAt(-1, 9));
  EXPECT_EQ(numbers, (KArrayTemplate<int>{1, 9}));
}

TEST(KArrayTemplate, InsertAndRemoveClampOrIgnoreBadIndices) {
  KArrayTemplate<int> numbers{1, 2, 3};
  EXPECT_EQ(numbers.InsertAt(1, 7), 1);
  EXPECT_EQ(numbers.InsertAt(-5, 0), 0);
  EXPECT_EQ(numbers.InsertAt(100, 9), 5);
  EXPECT_EQ(numbers, (KArrayTemplate<int>{0, 1, 7, 2, 3, 9}));
  EXPECT_EQ(numbers.RemoveAt(2), 7);
  EXPECT_EQ(numbers.RemoveAt(10), 0);
  EXPECT_EQ(numbers.RemoveAt(-1), 0);
  EXPECT_EQ(numbers, (KArrayTemplate<int>{0, 1, 2, 3, 9}));
  EXPECT_EQ(numbers.Find(3), 3);
  EXPECT_EQ(numbers.Find(42), -1);
  numbers.Resize(-4);
  EXPECT_TRUE(numbers.IsEmpty());
}

TEST(KArrayTemplate, ReserveToFillMakesRoomWithoutTouchingTheItemsOrTheirCopies) {
  KArrayTemplate<double> values{1.5, 2.5};
  const KArrayTemplate<double> copy = values;
  values.ReserveToFill(100000);
  EXPECT_GE(values.Std().capacity(), 100000u);
  EXPECT_EQ(values, (KArrayTemplate<double>{1.5, 2.5}));
  for (int i = 0; i < 99998; ++i) values.Add(i);
  EXPECT_EQ(values.GetCount(), 100000);
  EXPECT_EQ(values.GetAt(99999), 99997.0);
  // The copy shared the storage before the reservation: it keeps its own two items.
  EXPECT_EQ(copy, (KArrayTemplate<double>{1.5, 2.5}));
  // Fewer than there are, or none: nothing changes.
  values.ReserveToFill(10);
  values.ReserveToFill(-1);
  EXPECT_EQ(values.GetCount(), 100000);
}

TEST(KBaseArray, HoldsItemsOfItsSize) {
  KBaseArray array(16, 8);
  EXPECT_EQ(array.GetItemSize(), 16);
  EXPECT_EQ(array.GetCount(), 0);
  unsigned char item[16];
  for (int i = 0; i < 16; ++i) item[i] = static_cast<unsigned char>(i);
  EXPECT_EQ(array.Add(item), 0);
  EXPECT_EQ(array.Add(item), 1);
  ASSERT_NE(array.GetAt(1), nullptr);
  EXPECT_EQ(static_cast<const unsigned char*>(array.GetAt(1))[15], 15);
  EXPECT_EQ(array.GetAt(2), nullptr);
  EXPECT_EQ(array.GetAt(-1), nullptr);
  array.Clear();
  EXPECT_EQ(array.GetCount(), 0);
}

TEST(KSet2, KeepsInsertionOrderAndRefusesDuplicates) {
  KSet2<int> set;
  EXPECT_TRUE(set.Add(5));
  EXPECT_TRUE(set.Add(3));
  EXPECT_TRUE(set.Add(9));
  EXPECT_FALSE(set.Add(3));
  ASSERT_EQ(set.GetCount(), 3);
  EXPECT_EQ(set.GetAt(0), 5);
  EXPECT_EQ(set.GetAt(1), 3);
  EXPECT_EQ(set.GetAt(2), 9);
  EXPECT_TRUE(set.Contains(9));
  EXPECT_FALSE(set.Contains(4));
}

TEST(KSet2, RemoveKeepsTheOrderOfTheRest) {
  KSet2<int> set;
  for (int value : {1, 2, 3, 4}) set.Add(value);
  EXPECT_TRUE(set.Remove(2));
  EXPECT_FALSE(set.Remove(2));
  EXPECT_FALSE(set.Contains(2));
  ASSERT_EQ(set.GetCount(), 3);
  EXPECT_EQ(set.GetAt(0), 1);
  EXPECT_EQ(set.GetAt(1), 3);
  EXPECT_EQ(set.GetAt(2), 4);
  // Positions after the removal are right: removing the last one works, and so does adding.
  EXPECT_TRUE(set.Remove(4));
  EXPECT_TRUE(set.Add(2));
  EXPECT_EQ(set.GetAt(2), 2);
  int sum = 0;
  for (int value : set) sum += value;
  EXPECT_EQ(sum, 6);
  set.Clear();
  EXPECT_EQ(set.GetCount(), 0);
  EXPECT_TRUE(set.Add(1));
}

}  // namespace
