// The manager's pool of property names: one entry per text, which stays where it is while the
// pool grows, with the hash of its text.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kit/property_names.h"

namespace {

using namespace zylsdk;

TEST(PropertyNames, OneEntryPerText) {
  PropertyNames names;
  const PropertyName* diffuse = names.Intern("DiffuseColor");
  const PropertyName* transparency = names.Intern("TransparencyFactor");  // longer than a short string
  EXPECT_NE(diffuse, transparency);
  EXPECT_EQ(names.Intern(std::string("Diffuse") + "Color"), diffuse);
  EXPECT_EQ(names.Intern("TransparencyFactor"), transparency);
  EXPECT_EQ(diffuse->text, KString("DiffuseColor"));
  EXPECT_EQ(transparency->text, KString("TransparencyFactor"));
  EXPECT_NE(names.Intern("diffusecolor"), diffuse);  // names are case-sensitive
  EXPECT_EQ(names.Intern("")->text, KString(""));
}

// Names met one after the other, as an object's properties are, from one buffer whose text
// changes: each is told apart from the names that share its length and end characters.
TEST(PropertyNames, NamesAlikeAtTheirEndsAreToldApartWhateverBufferTheyComeFrom) {
  PropertyNames names;
  const PropertyName* a = names.Intern("ColorA1");
  const PropertyName* b = names.Intern("ColorB1");
  EXPECT_NE(a, b);
  std::string buffer = "ColorA1";
  for (int round = 0; round < 3; ++round) {
    buffer[5] = 'A';
    EXPECT_EQ(names.Intern(buffer), a) << round;
    buffer[5] = 'B';
    EXPECT_EQ(names.Intern(buffer), b) << round;
    buffer[5] = 'C';
    EXPECT_EQ(names.Intern(buffer)->text, KString("ColorC1")) << round;
  }
}

TEST(PropertyNames, EntriesStayPutAndKeepTheirHash) {
  PropertyNames names;
  std::vector<const PropertyName*> entries;
  for (int i = 0; i < 5000; ++i) entries.push_back(names.Intern("a name long enough to be allocated " + std::to_string(i)));
  for (int i = 0; i < 5000; ++i) {
    const std::string text = "a name long enough to be allocated " + std::to_string(i);
    ASSERT_EQ(names.Intern(text), entries[static_cast<size_t>(i)]) << i;
    EXPECT_EQ(entries[static_cast<size_t>(i)]->text, KString(text.c_str()));
    EXPECT_EQ(entries[static_cast<size_t>(i)]->hash, PropertyNames::Hash(text));
  }
}

}  // namespace
