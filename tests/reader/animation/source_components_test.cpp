// Sources read component by component, as samplers read them: every named component of every
// item, one after another.

#include "reader/dom/source.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;

class SourceComponentsTest : public zyltest::ReaderTest {
 protected:
  // A source of `values` whose accessor has the attributes `accessor` and holds `params`.
  DaeElement* Source(const std::string& values, const std::string& accessor, const std::string& params) {
    return Parse("<source id=\"s\"><float_array id=\"s-array\">" + values +
                 "</float_array><technique_common><accessor source=\"#s-array\" " + accessor + ">" + params +
                 "</accessor></technique_common></source>");
  }
  static std::vector<double> Values(const KArrayTemplate<double>& array) {
    return std::vector<double>(array.begin(), array.end());
  }
};

const char* const kXYZ =
    "<param name=\"X\" type=\"float\"/><param name=\"Y\" type=\"float\"/><param name=\"Z\" type=\"float\"/>";

TEST_F(SourceComponentsTest, TriplesGiveThreeValuesPerItem) {
  KArrayTemplate<double> out;
  ASSERT_TRUE(ImportSourceComponents(Source("1 2 3 4 5 6", "stride=\"3\"", kXYZ), out));
  EXPECT_EQ(Values(out), (std::vector<double>{1, 2, 3, 4, 5, 6}));
  // The item form keeps the first component only.
  ASSERT_TRUE(ImportSource(Source("1 2 3 4 5 6", "stride=\"3\"", kXYZ), out));
  EXPECT_EQ(Values(out), (std::vector<double>{1, 4}));
}

TEST_F(SourceComponentsTest, UnnamedParamsAreSkipped) {
  KArrayTemplate<double> out;
  ASSERT_TRUE(ImportSourceComponents(
      Source("1 2 3 4 5 6", "stride=\"3\"",
             "<param name=\"X\" type=\"float\"/><param type=\"float\"/><param name=\"Z\" type=\"float\"/>"),
      out));
  EXPECT_EQ(Values(out), (std::vector<double>{1, 3, 4, 6}));
}

TEST_F(SourceComponentsTest, OffsetAndCountChooseTheItems) {
  KArrayTemplate<double> out;
  ASSERT_TRUE(ImportSourceComponents(Source("9 1 2 3 4 5 6", "offset=\"1\" stride=\"2\" count=\"2\"",
                                            "<param name=\"A\" type=\"float\"/><param name=\"B\" type=\"float\"/>"),
                                     out));
  EXPECT_EQ(Values(out), (std::vector<double>{1, 2, 3, 4}));
}

TEST_F(SourceComponentsTest, ComponentsPastTheArrayAreZeroAndPastTheStrideLeftOut) {
  KArrayTemplate<double> out;
  // Two items are declared; the second starts inside the array but ends past it.
  ASSERT_TRUE(ImportSourceComponents(Source("1 2 3 4", "stride=\"3\" count=\"2\"", kXYZ), out));
  EXPECT_EQ(Values(out), (std::vector<double>{1, 2, 3, 4, 0, 0}));
  // Three params on a stride of one: only the first lies inside the item.
  ASSERT_TRUE(ImportSourceComponents(Source("1 2 3", "", kXYZ), out));
  EXPECT_EQ(Values(out), (std::vector<double>{1, 2, 3}));
}

TEST_F(SourceComponentsTest, NamesAreReadTheSameWay) {
  KArrayTemplate<KString> out;
  ASSERT_TRUE(ImportSourceComponents(
      Parse("<source><Name_array>A B C D</Name_array><technique_common><accessor stride=\"2\">"
            "<param name=\"P\" type=\"name\"/><param name=\"Q\" type=\"name\"/></accessor>"
            "</technique_common></source>"),
      out));
  ASSERT_EQ(out.GetCount(), 4);
  EXPECT_EQ(out[3], "D");
}

TEST_F(SourceComponentsTest, ASourceWithoutArrayOrAccessorIsNotRead) {
  KArrayTemplate<double> numbers;
  numbers.Add(1.0);
  EXPECT_FALSE(ImportSourceComponents(nullptr, numbers));
  EXPECT_TRUE(numbers.IsEmpty());
  EXPECT_FALSE(ImportSourceComponents(Parse("<source><float_array>1 2</float_array></source>"), numbers));
  KArrayTemplate<KString> names;
  EXPECT_FALSE(ImportSourceComponents(Parse("<source><float_array>1 2</float_array></source>"), names));
}

}  // namespace
