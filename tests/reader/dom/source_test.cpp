// Reading `source` elements through their accessor: offset, stride, count, named and unnamed
// params, values only as far as the array reaches, every value type; and the same items seen in
// place, one at a time.

#include <gtest/gtest.h>

#include <string>

#include "reader/dom/source.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;
using SourceTest = zyltest::ReaderTest;

// A source with a float array of `values` and an accessor with the given attributes and params.
std::string FloatSource(const std::string& values, const std::string& accessorAttributes, const std::string& params) {
  return "<source id=\"s\"><float_array id=\"s-array\" count=\"999999999\">" + values +
         "</float_array><technique_common><accessor source=\"#s-array\" " + accessorAttributes + ">" + params +
         "</accessor></technique_common></source>";
}

const char* const kXyz = "<param name=\"X\" type=\"float\"/><param name=\"Y\" type=\"float\"/>"
                         "<param name=\"Z\" type=\"float\"/>";

TEST_F(SourceTest, VectorsThroughStrideAndNamedParams) {
  DaeElement* source = Parse(FloatSource("1 2 3 4 5 6", "count=\"2\" stride=\"3\"", kXyz));
  KArrayTemplate<KZylVector4> vectors;
  ASSERT_TRUE(ImportSource(source, vectors));
  ASSERT_EQ(vectors.GetCount(), 2);
  EXPECT_EQ(vectors[0], KZylVector4(1, 2, 3, 0));
  EXPECT_EQ(vectors[1], KZylVector4(4, 5, 6, 0));
}

TEST_F(SourceTest, OffsetSkipsLeadingValues) {
  DaeElement* source = Parse(FloatSource("9 9 1 2 3 4 5 6", "offset=\"2\" count=\"2\" stride=\"3\"", kXyz));
  KArrayTemplate<KZylVector4> vectors;
  ASSERT_TRUE(ImportSource(source, vectors));
  ASSERT_EQ(vectors.GetCount(), 2);
  EXPECT_EQ(vectors[0], KZylVector4(1, 2, 3, 0));
  EXPECT_EQ(vectors[1], KZylVector4(4, 5, 6, 0));
}

TEST_F(SourceTest, CountLimitsTheItems) {
  DaeElement* source = Parse(FloatSource("1 2 3 4 5 6", "count=\"1\" stride=\"3\"", kXyz));
  KArrayTemplate<KZylVector4> vectors;
  ASSERT_TRUE(ImportSource(source, vectors));
  ASSERT_EQ(vectors.GetCount(), 1);
  EXPECT_EQ(vectors[0], KZylVector4(1, 2, 3, 0));
}

TEST_F(SourceTest, ItemsAreReadOnlyAsFarAsTheArrayReaches) {
  // Seven values, stride 3, a declared count of 1000: the third item starts inside the array
  // and lacks two values (they are 0); the items after it do not exist.
  DaeElement* source = Parse(FloatSource("1 2 3 4 5 6 7", "count=\"1000\" stride=\"3\"", kXyz));
  KArrayTemplate<KZylVector4> vectors;
  ASSERT_TRUE(ImportSource(source, vectors));
  ASSERT_EQ(vectors.GetCount(), 3);
  EXPECT_EQ(vectors[2], KZylVector4(7, 0, 0, 0));
}

TEST_F(SourceTest, WithoutCountAsManyWholeItemsAsFit) {
  DaeElement* source = Parse(FloatSource("1 2 3 4 5 6 7", "stride=\"3\"", kXyz));
  KArrayTemplate<KZylVector4> vectors;
  ASSERT_TRUE(ImportSource(source, vectors));
  EXPECT_EQ(vectors.GetCount(), 2);
}

TEST_F(SourceTest, HugeDeclaredCountsAllocateNothingUnread) {
  DaeElement* source = Parse(FloatSource("1 2", "count=\"2000000000\" stride=\"1\"", "<param name=\"X\"/>"));
  KArrayTemplate<double> values;
  ASSERT_TRUE(ImportSource(source, values));
  EXPECT_EQ(values, (KArrayTemplate<double>{1, 2}));
  DaeElement* huge = Parse(FloatSource("1 2", "count=\"99999999999\" stride=\"99999999999\" offset=\"99999999999\"",
                                    "<param name=\"X\"/>"));
  ASSERT_TRUE(ImportSource(huge, values));
  EXPECT_TRUE(values.IsEmpty());
}

TEST_F(SourceTest, OddAccessorNumbersAreMadeHarmless) {
  KArrayTemplate<double> values;
  // A stride below 1 reads as 1; a negative offset or count as 0.
  ASSERT_TRUE(ImportSource(Parse(FloatSource("1 2 3", "stride=\"0\"", "<param name=\"X\"/>")), values));
  EXPECT_EQ(values, (KArrayTemplate<double>{1, 2, 3}));
  ASSERT_TRUE(ImportSource(Parse(FloatSource("1 2 3", "stride=\"-4\" offset=\"-2\"", "<param name=\"X\"/>")), values));
  EXPECT_EQ(values, (KArrayTemplate<double>{1, 2, 3}));
  ASSERT_TRUE(ImportSource(Parse(FloatSource("1 2 3", "count=\"-3\"", "<param name=\"X\"/>")), values));
  EXPECT_TRUE(values.IsEmpty());
  ASSERT_TRUE(ImportSource(Parse(FloatSource("1 2 3", "count=\"abc\"", "<param name=\"X\"/>")), values));
  EXPECT_TRUE(values.IsEmpty());
}

TEST_F(SourceTest, AnUnnamedParamSkipsItsComponent) {
  DaeElement* source = Parse(FloatSource("1 2 3 4 5 6", "count=\"2\" stride=\"3\"",
                                      "<param name=\"X\" type=\"float\"/><param type=\"float\"/>"
                                      "<param name=\"Z\" type=\"float\"/>"));
  KArrayTemplate<KZylVector4> vectors;
  ASSERT_TRUE(ImportSource(source, vectors));
  ASSERT_EQ(vectors.GetCount(), 2);
  EXPECT_EQ(vectors[0], KZylVector4(1, 3, 0, 0));
  EXPECT_EQ(vectors[1], KZylVector4(4, 6, 0, 0));
}

TEST_F(SourceTest, TextureCoordinatesFromAStrideOfThree) {
  DaeElement* source = Parse(FloatSource("0.1 0.2 9 0.3 0.4 9", "count=\"2\" stride=\"3\"",
                                      "<param name=\"S\" type=\"float\"/><param name=\"T\" type=\"float\"/>"
                                      "<param type=\"float\"/>"));
  KArrayTemplate<KZylVector2> uvs;
  ASSERT_TRUE(ImportSource(source, uvs));
  ASSERT_EQ(uvs.GetCount(), 2);
  EXPECT_EQ(uvs[0], KZylVector2(0.1, 0.2));
  EXPECT_EQ(uvs[1], KZylVector2(0.3, 0.4));
}

TEST_F(SourceTest, ColoursWithoutAlphaHaveAlphaOne) {
  const char* rgb = "<param name=\"R\" type=\"float\"/><param name=\"G\" type=\"float\"/>"
                    "<param name=\"B\" type=\"float\"/>";
  KArrayTemplate<KZylColor> colours;
  ASSERT_TRUE(ImportSource(Parse(FloatSource("0.1 0.2 0.3 0.4 0.5 0.6", "count=\"2\" stride=\"3\"", rgb)), colours));
  ASSERT_EQ(colours.GetCount(), 2);
  EXPECT_EQ(colours[0], KZylColor(0.1, 0.2, 0.3, 1.0));
  EXPECT_EQ(colours[1], KZylColor(0.4, 0.5, 0.6, 1.0));
  std::string rgba = std::string(rgb) + "<param name=\"A\" type=\"float\"/>";
  ASSERT_TRUE(ImportSource(Parse(FloatSource("0.1 0.2 0.3 0.4", "count=\"1\" stride=\"4\"", rgba)), colours));
  ASSERT_EQ(colours.GetCount(), 1);
  EXPECT_EQ(colours[0], KZylColor(0.1, 0.2, 0.3, 0.4));
}

TEST_F(SourceTest, NumbersFromTheFirstNamedParam) {
  KArrayTemplate<double> times;
  ASSERT_TRUE(ImportSource(Parse(FloatSource("0 0.5 1", "count=\"3\"", "<param name=\"TIME\" type=\"float\"/>")),
                           times));
  EXPECT_EQ(times, (KArrayTemplate<double>{0, 0.5, 1}));
  ASSERT_TRUE(ImportSource(Parse(FloatSource("1 2 3 4", "count=\"2\" stride=\"2\"",
                                             "<param type=\"float\"/><param name=\"Y\" type=\"float\"/>")),
                           times));
  EXPECT_EQ(times, (KArrayTemplate<double>{2, 4}));
}

TEST_F(SourceTest, MatricesAreConvertedFromColladaRows) {
  std::string values = "1 0 0 10 0 1 0 20 0 0 1 30 0 0 0 1  2 0 0 0 0 2 0 0 0 0 2 0 0 0 0 1";
  DaeElement* source =
      Parse(FloatSource(values, "count=\"2\" stride=\"16\"", "<param name=\"TRANSFORM\" type=\"float4x4\"/>"));
  KArrayTemplate<KZylXMatrix> matrices;
  ASSERT_TRUE(ImportSource(source, matrices));
  ASSERT_EQ(matrices.GetCount(), 2);
  EXPECT_EQ(matrices[0].GetT(), KZylVector4(10, 20, 30, 1));
  EXPECT_EQ(matrices[1].GetS(), KZylVector4(2, 2, 2, 1));
  // A matrix cut short by the end of the array takes the rest from the identity.
  DaeElement* cut = Parse(FloatSource("1 0 0 5", "count=\"1\" stride=\"16\"", "<param name=\"T\" type=\"float4x4\"/>"));
  ASSERT_TRUE(ImportSource(cut, matrices));
  ASSERT_EQ(matrices.GetCount(), 1);
  EXPECT_EQ(matrices[0], TranslationMatrix(KZylVector4(5, 0, 0)));
}

TEST_F(SourceTest, NamesFromNameAndIdrefArrays) {
  DaeElement* names = Parse(
      "<source><Name_array count=\"3\">joint1\n joint2\tj\xc3\xa9</Name_array><technique_common>"
      "<accessor count=\"3\"><param name=\"JOINT\" type=\"name\"/></accessor></technique_common></source>");
  KArrayTemplate<KString> texts;
  ASSERT_TRUE(ImportSource(names, texts));
  ASSERT_EQ(texts.GetCount(), 3);
  EXPECT_EQ(texts[0], "joint1");
  EXPECT_EQ(texts[1], "joint2");
  EXPECT_EQ(texts[2].Std(), "j\xc3\xa9");
  DaeElement* idrefs = Parse(
      "<source><IDREF_array>a b c d</IDREF_array><technique_common><accessor count=\"2\" stride=\"2\">"
      "<param name=\"JOINT\" type=\"IDREF\"/><param type=\"IDREF\"/></accessor></technique_common></source>");
  ASSERT_TRUE(ImportSource(idrefs, texts));
  EXPECT_EQ(texts, (KArrayTemplate<KString>{"a", "c"}));
  KArrayTemplate<double> numbers;
  EXPECT_FALSE(ImportSource(idrefs, numbers));  // no float_array
}

TEST_F(SourceTest, MissingSourceArrayOrAccessorGivesFalseAndAnEmptyArray) {
  KArrayTemplate<double> values{1, 2};
  EXPECT_FALSE(ImportSource(nullptr, values));
  EXPECT_TRUE(values.IsEmpty());
  values.Add(1);
  EXPECT_FALSE(ImportSource(Parse("<source><technique_common><accessor/></technique_common></source>"), values));
  EXPECT_TRUE(values.IsEmpty());
  values.Add(1);
  EXPECT_FALSE(ImportSource(Parse("<source><float_array>1 2</float_array></source>"), values));
  EXPECT_TRUE(values.IsEmpty());
  EXPECT_FALSE(ImportSource(
      Parse("<source><float_array>1 2</float_array><technique_common/></source>"), values));
  KArrayTemplate<KString> texts{"x"};
  EXPECT_FALSE(ImportSource(nullptr, texts));
  EXPECT_TRUE(texts.IsEmpty());
}

TEST_F(SourceTest, AnAccessorWithoutNamedParamsGivesDefaultItems) {
  KArrayTemplate<KZylColor> colours;
  ASSERT_TRUE(ImportSource(Parse(FloatSource("0.5 0.5", "count=\"2\"", "")), colours));
  ASSERT_EQ(colours.GetCount(), 2);
  EXPECT_EQ(colours[0], KZylColor(0, 0, 0, 1));
}

// Every item that NumberSource gives in place equals the one ImportSource copies out.
template <class T>
void ExpectSameItemsInPlace(DaeElement* source, const SourceRules& rules) {
  KArrayTemplate<T> copied;
  NumberSource inPlace;
  ASSERT_EQ(inPlace.Open(source, rules), ImportSource(source, copied, rules));
  ASSERT_EQ(inPlace.Count(), copied.GetCount());
  for (int i = 0; i < copied.GetCount(); ++i) EXPECT_EQ(inPlace.Item<T>(i), copied[i]) << "item " << i;
}

TEST_F(SourceTest, ItemsSeenInPlaceAreThoseCopiedOut) {
  const std::string unnamedY = "<param name=\"X\"/><param type=\"float\"/><param name=\"Z\"/>";
  const std::string layouts[][3] = {
      {"1 2 3 4 5 6 7", "count=\"1000\" stride=\"3\"", kXyz},  // the last item cut short
      {"9 9 1 2 3 4 5 6", "offset=\"2\" count=\"2\" stride=\"3\"", kXyz},
      {"1 2 3 4 5 6 7", "stride=\"3\"", kXyz},
      {"1 2 3 4 5 6", "count=\"2\" stride=\"3\"", unnamedY},
      {"0.1 0.2 9 0.3 0.4 9", "count=\"2\" stride=\"2\"", kXyz},  // a param beyond the stride
      {"1 2 3 4 5 6 7 8 9", "count=\"1\" stride=\"100\"", kXyz},  // too wide to stream
      {"0.5 0.25", "count=\"2\"", ""},
  };
  for (const SourceRules& rules : {SourceRules(), SourceRules::Everything()}) {
    for (const auto& layout : layouts) {
      SCOPED_TRACE(layout[0] + " / " + layout[1] + " / " + layout[2]);
      DaeElement* source = Parse(FloatSource(layout[0], layout[1], layout[2]));
      ExpectSameItemsInPlace<double>(source, rules);
      ExpectSameItemsInPlace<KZylVector2>(source, rules);
      ExpectSameItemsInPlace<KZylVector4>(source, rules);
      ExpectSameItemsInPlace<KZylColor>(source, rules);
    }
  }
}

TEST_F(SourceTest, ASourceThatCannotBeReadOpensWithoutItems) {
  NumberSource numbers;
  EXPECT_FALSE(numbers.Open(nullptr));
  EXPECT_EQ(numbers.Count(), 0);
  ASSERT_TRUE(numbers.Open(Parse(FloatSource("1 2 3", "", "<param name=\"X\"/>"))));
  EXPECT_EQ(numbers.Count(), 3);
  EXPECT_FALSE(numbers.Open(Parse("<source><float_array>1 2</float_array></source>")));
  EXPECT_EQ(numbers.Count(), 0);
  EXPECT_FALSE(numbers.Open(Parse("<source><technique_common><accessor/></technique_common></source>")));
  EXPECT_EQ(numbers.Count(), 0);
}

}  // namespace
