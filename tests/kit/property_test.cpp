// KZylProperty: typed writes that refuse what does not fit, typed reads, and dynamic
// properties; the read options' properties.

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <string>
#include <vector>

#include "kit/zylsdk.h"

namespace {

using namespace zylsdk;

class PropertyTest : public ::testing::Test {
 protected:
  KZylProperty Make(const char* name, EZylType type) { return KZylProperty::Create(owner, name, type); }
  KZylSdkManager manager;
  KZylNull* owner = KZylNull::Create(&manager, "owner");
};

TEST_F(PropertyTest, CreateAddsADynamicPropertyOnce) {
  KZylProperty weight = KZylProperty::Create(owner, "weight", DTDouble, "Weight");
  ASSERT_TRUE(weight.IsValid());
  EXPECT_TRUE(weight.IsDynamic());
  EXPECT_EQ(weight.GetName(), "weight");
  EXPECT_EQ(weight.GetLabel(), "Weight");
  EXPECT_EQ(weight.GetPropertyDataType(), eZylDouble);
  EXPECT_EQ(weight.GetDouble(), 0.0);
  int count = owner->GetPropertyCount();
  weight.Set(0.25);
  // A second Create of the same name gives the existing property, whatever the type asked.
  KZylProperty again = KZylProperty::Create(owner, "weight", eZylString);
  EXPECT_EQ(owner->GetPropertyCount(), count);
  EXPECT_EQ(again.GetPropertyDataType(), eZylDouble);
  EXPECT_EQ(again.GetDouble(), 0.25);
  EXPECT_EQ(owner->FindProperty("weight").GetDouble(), 0.25);
  EXPECT_FALSE(owner->FindProperty("Weight").IsValid());
  EXPECT_FALSE(KZylProperty::Create(nullptr, "x", DTDouble).IsValid());
}

TEST_F(PropertyTest, DoubleAcceptsNumbersOnly) {
  KZylProperty p = Make("d", eZylDouble);
  EXPECT_TRUE(p.Set(2.5));
  EXPECT_EQ(p.GetDouble(), 2.5);
  EXPECT_TRUE(p.Set(3));
  EXPECT_EQ(p.GetDouble(), 3.0);
  EXPECT_TRUE(p.Set(true));
  EXPECT_EQ(p.GetDouble(), 1.0);
  EXPECT_FALSE(p.Set("text"));
  EXPECT_FALSE(p.Set(KZylColor(1, 2, 3)));
  EXPECT_FALSE(p.Set(KTime(5)));
  EXPECT_EQ(p.GetDouble(), 1.0);
  EXPECT_EQ(p.GetString(), "");
  EXPECT_EQ(p.GetNumbers(), std::vector<double>{1.0});
}

TEST_F(PropertyTest, IntegerTruncatesAndSaturates) {
  KZylProperty p = Make("i", eZylInteger);
  EXPECT_TRUE(p.Set(7.9));
  EXPECT_EQ(p.GetInt(), 7);
  EXPECT_TRUE(p.Set(-7.9));
  EXPECT_EQ(p.GetInt(), -7);
  EXPECT_TRUE(p.Set(1e30));
  EXPECT_EQ(p.GetInt(), INT_MAX);
  EXPECT_TRUE(p.Set(-1e30));
  EXPECT_EQ(p.GetInt(), INT_MIN);
  EXPECT_TRUE(p.Set(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(p.GetInt(), 0);
  EXPECT_TRUE(p.Set(INT_MAX));
  EXPECT_EQ(p.GetInt(), INT_MAX);
}

TEST_F(PropertyTest, BoolAndFloatNormaliseTheirValues) {
  KZylProperty flag = Make("b", eZylBool);
  EXPECT_TRUE(flag.Set(5.0));
  EXPECT_TRUE(flag.GetBool());
  EXPECT_EQ(flag.GetDouble(), 1.0);
  EXPECT_TRUE(flag.Set(false));
  EXPECT_FALSE(flag.GetBool());

  KZylProperty single = Make("f", eZylFloat);
  EXPECT_TRUE(single.Set(0.1));
  EXPECT_EQ(single.GetDouble(), static_cast<double>(0.1f));
}

TEST_F(PropertyTest, ColourPropertiesHoldThreeComponents) {
  KZylProperty colour = Make("c", DTColor3);
  EXPECT_TRUE(colour.Set(KZylColor(0.1, 0.2, 0.3, 0.4)));
  EXPECT_EQ(colour.GetColor(), KZylColor(0.1, 0.2, 0.3, 1.0));  // alpha dropped
  EXPECT_EQ(colour.GetNumbers(), (std::vector<double>{0.1, 0.2, 0.3}));
  EXPECT_FALSE(colour.Set(0.5));
  EXPECT_FALSE(colour.Set("red"));
  EXPECT_EQ(colour.GetDouble(), 0.1);
  EXPECT_TRUE(colour.Set(KZylVector4(1, 2, 3, 4)));
  EXPECT_EQ(colour.GetVector4(), KZylVector4(1, 2, 3, 0));

  KZylProperty four = Make("c4", eZylDouble4);
  EXPECT_TRUE(four.Set(KZylColor(0.1, 0.2, 0.3, 0.4)));
  EXPECT_EQ(four.GetColor(), KZylColor(0.1, 0.2, 0.3, 0.4));
  EXPECT_EQ(four.GetVector4(), KZylVector4(0.1, 0.2, 0.3, 0.4));
}

TEST_F(PropertyTest, MatrixStringAndTimeProperties) {
  KZylProperty matrix = Make("m", eZylDouble44);
  EXPECT_TRUE(matrix.GetMatrix().IsIdentity());  // a new matrix property is the identity
  KZylMatrix value;
  value.mData[3][0] = 5.0;
  EXPECT_TRUE(matrix.Set(value));
  EXPECT_EQ(matrix.GetMatrix(), value);
  EXPECT_EQ(matrix.GetNumbers().size(), 16u);
  EXPECT_FALSE(matrix.Set(1.0));

  KZylProperty text = Make("s", eZylString);
  EXPECT_TRUE(text.Set("phong"));
  EXPECT_EQ(text.GetString(), "phong");
  EXPECT_FALSE(text.Set(1.0));
  EXPECT_EQ(text.GetDouble(), 0.0);
  EXPECT_TRUE(text.GetNumbers().empty());

  KZylProperty time = Make("t", eZylTime);
  EXPECT_TRUE(time.Set(KTime(1234)));
  EXPECT_EQ(time.GetTime(), KTime(1234));
  EXPECT_FALSE(time.Set(2.0));
  EXPECT_FALSE(text.Set(KTime(1)));
}

TEST_F(PropertyTest, InvalidHandlesDoNothing) {
  KZylProperty none = owner->FindProperty("missing");
  EXPECT_FALSE(none.IsValid());
  EXPECT_FALSE(none.Set(1.0));
  EXPECT_FALSE(none.Set("x"));
  EXPECT_EQ(none.GetDouble(), 0.0);
  EXPECT_EQ(none.GetName(), "");
  EXPECT_EQ(none.GetPropertyDataType(), eZylUndefined);
  EXPECT_FALSE(owner->GetProperty(-1).IsValid());
  EXPECT_FALSE(owner->GetProperty(owner->GetPropertyCount()).IsValid());
  EXPECT_FALSE(KZylProperty().IsValid());
}

TEST_F(PropertyTest, CloneCopiesPropertyValues) {
  KZylSurfacePhong* phong = KZylSurfacePhong::Create(&manager, "blinn1");
  phong->GetDiffuseColor().Set(KZylColor(0.5, 0.25, 0.125));
  KZylProperty::Create(phong, "extra", DTDouble).Set(3.0);
  auto* copy = static_cast<KZylSurfacePhong*>(phong->Clone());
  ASSERT_NE(copy, nullptr);
  ASSERT_TRUE(copy->Is(KZylSurfacePhong::ClassId));
  EXPECT_EQ(copy->GetName(), "blinn1");
  EXPECT_EQ(copy->GetDiffuseColor().GetColor(), KZylColor(0.5, 0.25, 0.125));
  EXPECT_EQ(copy->FindProperty("extra").GetDouble(), 3.0);
  // Independent: changing the copy leaves the original.
  copy->GetDiffuseColor().Set(KZylColor(1, 1, 1));
  EXPECT_EQ(phong->GetDiffuseColor().GetColor(), KZylColor(0.5, 0.25, 0.125));
  EXPECT_EQ(copy->GetShadingModel().GetString(), "phong");
}

// A copy holds its original's properties until one of them writes: whichever writes, whatever
// it writes, the other does not see it, and each outlives the other.
TEST_F(PropertyTest, CopiesAndOriginalsNeverSeeEachOthersWrites) {
  KZylSurfacePhong* original = KZylSurfacePhong::Create(&manager, "original");
  original->GetShininess().Set(7.0);
  auto* copy = static_cast<KZylSurfacePhong*>(original->Clone());
  auto* second = static_cast<KZylSurfacePhong*>(copy->Clone());
  ASSERT_NE(copy, nullptr);
  ASSERT_NE(second, nullptr);

  original->GetShininess().Set(8.0);
  original->GetShadingModel().Set("changed");
  original->GetAmbientColor().Set(KZylColor(1, 2, 3));
  EXPECT_EQ(copy->GetShininess().GetDouble(), 7.0);
  EXPECT_EQ(copy->GetShadingModel().GetString(), "phong");
  EXPECT_EQ(copy->GetAmbientColor().GetColor(), KZylColor(0.2, 0.2, 0.2));

  // A property added to one copy is that copy's alone.
  KZylProperty::Create(copy, "extra", eZylDouble44, "Extra").Set(KZylMatrix());
  EXPECT_FALSE(second->FindProperty("extra").IsValid());
  EXPECT_FALSE(original->FindProperty("extra").IsValid());
  EXPECT_EQ(second->GetPropertyCount(), 14);

  // A write that does not fit changes nothing anywhere.
  EXPECT_FALSE(second->GetShininess().Set("text"));
  EXPECT_FALSE(second->GetShadingModel().Set(1.0));
  EXPECT_EQ(second->GetShininess().GetDouble(), 7.0);
  EXPECT_EQ(copy->GetShininess().GetDouble(), 7.0);

  // A time and a text written into the last copy stay there.
  KZylProperty::Create(second, "when", eZylTime).Set(KTime(42));
  second->GetShadingModel().Set("second");
  EXPECT_EQ(copy->GetShadingModel().GetString(), "phong");
  EXPECT_FALSE(copy->FindProperty("when").IsValid());

  // Each outlives the others.
  original->Destroy();
  copy->Destroy();
  EXPECT_EQ(second->GetShininess().GetDouble(), 7.0);
  EXPECT_EQ(second->GetShadingModel().GetString(), "second");
  EXPECT_EQ(second->FindProperty("when").GetTime(), KTime(42));
}

// A copy of a copy that wrote keeps what was written before the copy was made.
TEST_F(PropertyTest, ACopyOfAWrittenCopyKeepsItsValues) {
  KZylSurfaceLambert* original = KZylSurfaceLambert::Create(&manager, "original");
  auto* copy = static_cast<KZylSurfaceLambert*>(original->Clone());
  copy->GetDiffuseFactor().Set(0.5);
  auto* again = static_cast<KZylSurfaceLambert*>(copy->Clone());
  copy->Destroy();
  EXPECT_EQ(again->GetDiffuseFactor().GetDouble(), 0.5);
  EXPECT_EQ(original->GetDiffuseFactor().GetDouble(), 1.0);
  again->GetDiffuseFactor().Set(0.25);
  EXPECT_EQ(original->GetDiffuseFactor().GetDouble(), 1.0);
}

// Materials of a class start from the same defaults: what one writes, adds or loses with its
// destruction never reaches a material made later, of its class or another, in any manager.
TEST_F(PropertyTest, ACopyThatWritesOrAddsManyPropertiesKeepsThemAllInOrder) {
  KZylSurfacePhong* original = KZylSurfacePhong::Create(&manager, "original");
  auto* copy = static_cast<KZylSurfacePhong*>(original->Clone());
  const int count = copy->GetPropertyCount();
  std::vector<KString> names;
  for (int i = 0; i < count; ++i) names.push_back(copy->GetProperty(i).GetName());
  // Every numeric property written, one after the other, then forty added.
  for (int i = 0; i < count; ++i) copy->GetProperty(i).Set(100.0 + i);
  copy->GetProperty(count - 1).Set(KZylColor(4, 5, 6));
  for (int i = 0; i < 40; ++i) KZylProperty::Create(copy, KString("added") + i, eZylDouble).Set(1000.0 + i);
  ASSERT_EQ(copy->GetPropertyCount(), count + 40);
  for (int i = 0; i < count; ++i) {
    const KZylProperty property = copy->GetProperty(i);
    EXPECT_EQ(property.GetName(), names[static_cast<size_t>(i)]) << i;
    EXPECT_EQ(copy->FindProperty(names[static_cast<size_t>(i)]).GetName(), names[static_cast<size_t>(i)]) << i;
    const KZylProperty fresh = original->GetProperty(i);
    if (fresh.GetPropertyDataType() == eZylDouble) {
      EXPECT_EQ(property.GetDouble(), 100.0 + i) << i;
      EXPECT_NE(fresh.GetDouble(), 100.0 + i) << i;
    }
  }
  for (int i = 0; i < 40; ++i) EXPECT_EQ(copy->FindProperty(KString("added") + i).GetDouble(), 1000.0 + i) << i;
  EXPECT_EQ(original->GetPropertyCount(), count);
  EXPECT_FALSE(original->FindProperty("added0").IsValid());
  // A copy of the copy reads the same, and writes of its own stay its own.
  auto* second = static_cast<KZylSurfacePhong*>(copy->Clone());
  second->GetShininess().Set(-1.0);
  EXPECT_EQ(second->FindProperty("added39").GetDouble(), 1039.0);
  EXPECT_NE(copy->GetShininess().GetDouble(), -1.0);
  EXPECT_EQ(second->GetPropertyCount(), count + 40);
}

TEST_F(PropertyTest, NewMaterialsStartFromTheirClassDefaultsWhateverEarlierOnesWrote) {
  KZylSurfacePhong* first = KZylSurfacePhong::Create(&manager, "first");
  first->GetShininess().Set(5.0);
  first->GetShadingModel().Set("written");
  KZylProperty::Create(first, "extra", eZylDouble).Set(1.0);
  KZylSurfaceLambert* lambert = KZylSurfaceLambert::Create(&manager, "lambert");
  lambert->GetDiffuseFactor().Set(0.5);
  first->Destroy();

  KZylSurfacePhong* later = KZylSurfacePhong::Create(&manager, "later");
  EXPECT_EQ(later->GetPropertyCount(), 14);
  EXPECT_EQ(later->GetShininess().GetDouble(), 20.0);
  EXPECT_EQ(later->GetShadingModel().GetString(), "phong");
  EXPECT_EQ(later->GetDiffuseFactor().GetDouble(), 1.0);
  EXPECT_FALSE(later->FindProperty("extra").IsValid());
  KZylSurfaceLambert* laterLambert = KZylSurfaceLambert::Create(&manager, "later lambert");
  EXPECT_EQ(laterLambert->GetPropertyCount(), 9);
  EXPECT_EQ(laterLambert->GetDiffuseFactor().GetDouble(), 1.0);
  EXPECT_EQ(laterLambert->GetShadingModel().GetString(), "lambert");
  EXPECT_EQ(KZylSurfaceMaterial::Create(&manager, "plain")->GetShadingModel().GetString(), "unknown");

  // Writing the later one leaves the one made after it alone too.
  later->GetSpecularColor().Set(KZylColor(1, 1, 1));
  EXPECT_EQ(KZylSurfacePhong::Create(&manager, "last")->GetSpecularColor().GetColor(), KZylColor(0.2, 0.2, 0.2));

  KZylSdkManager other;
  KZylSurfacePhong* elsewhere = KZylSurfacePhong::Create(&other, "elsewhere");
  EXPECT_EQ(elsewhere->GetShininess().GetDouble(), 20.0);
  elsewhere->GetShininess().Set(3.0);
  EXPECT_EQ(KZylSurfacePhong::Create(&manager, "here")->GetShininess().GetDouble(), 20.0);
}

TEST_F(PropertyTest, MaterialsListTheirStaticPropertiesInOrder) {
  const std::vector<std::string> lambert = {"ShadingModel",  "EmissiveColor", "EmissiveFactor",
                                            "AmbientColor",  "AmbientFactor", "DiffuseColor",
                                            "DiffuseFactor", "TransparentColor", "TransparencyFactor"};
  std::vector<std::string> phong = lambert;
  for (const char* name : {"SpecularColor", "SpecularFactor", "Shininess", "ReflectionColor", "ReflectionFactor"})
    phong.push_back(name);
  auto names = [](const KZylObject& object) {
    std::vector<std::string> found;
    for (int i = 0; i < object.GetPropertyCount(); ++i) found.push_back(object.GetProperty(i).GetName().Std());
    return found;
  };
  KZylSurfacePhong* surface = KZylSurfacePhong::Create(&manager, "p");
  EXPECT_EQ(names(*KZylSurfaceLambert::Create(&manager, "l")), lambert);
  EXPECT_EQ(names(*surface), phong);
  EXPECT_EQ(names(*KZylSurfaceMaterial::Create(&manager, "m")), std::vector<std::string>{"ShadingModel"});
  // Properties added past the ones a class makes keep the earlier ones and their values.
  for (int i = 0; i < 20; ++i) KZylProperty::Create(surface, ("extra" + std::to_string(i)).c_str(), DTDouble).Set(double(i));
  EXPECT_EQ(surface->GetPropertyCount(), 34);
  EXPECT_EQ(surface->GetShininess().GetDouble(), 20.0);
  EXPECT_EQ(surface->FindProperty("extra19").GetDouble(), 19.0);
}

TEST_F(PropertyTest, ManyPropertiesAreFoundByName) {
  // Past a few properties the table finds names by their hashes: every one must still be found.
  for (int i = 0; i < 100; ++i) Make(("p" + std::to_string(i)).c_str(), eZylDouble).Set(double(i));
  for (int i = 0; i < 100; ++i) EXPECT_EQ(owner->FindProperty(("p" + std::to_string(i)).c_str()).GetDouble(), double(i)) << i;
  EXPECT_FALSE(owner->FindProperty("p100").IsValid());
  // Creating a known name again adds nothing; a copy finds every name as well.
  const int count = owner->GetPropertyCount();
  EXPECT_EQ(KZylProperty::Create(owner, "p42", eZylString).GetDouble(), 42.0);
  EXPECT_EQ(owner->GetPropertyCount(), count);
  auto* copy = static_cast<KZylNull*>(owner->Clone());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->GetPropertyCount(), count);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(copy->FindProperty(("p" + std::to_string(i)).c_str()).GetDouble(), double(i)) << i;
}

TEST_F(PropertyTest, CloneCopiesLabelsTextsAndMatrices) {
  KZylProperty::Create(owner, "labelled", DTDouble, "A label").Set(2.0);
  Make("text", eZylString).Set("some text");
  KZylMatrix value;
  value.mData[2][1] = -4.0;
  Make("matrix", eZylDouble44).Set(value);
  Make("fresh matrix", eZylDouble44);
  auto* copy = static_cast<KZylNull*>(owner->Clone());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->FindProperty("labelled").GetLabel(), "A label");
  EXPECT_EQ(copy->FindProperty("labelled").GetDouble(), 2.0);
  EXPECT_EQ(copy->FindProperty("text").GetString(), "some text");
  EXPECT_EQ(copy->FindProperty("matrix").GetMatrix(), value);
  EXPECT_TRUE(copy->FindProperty("fresh matrix").GetMatrix().IsIdentity());
  // The copy's parts are its own.
  copy->FindProperty("text").Set("changed");
  EXPECT_EQ(owner->FindProperty("text").GetString(), "some text");
  EXPECT_EQ(Make("unlabelled", eZylDouble).GetLabel(), "");
}

// A time shares its room with the numbers that its type does not have: a copy keeps every tick.
TEST_F(PropertyTest, CloneCopiesTimes) {
  Make("time", eZylTime).Set(KTime(-987654321012345));
  Make("numbers", eZylDouble4).Set(KZylVector4(1, 2, 3, 4));
  auto* copy = static_cast<KZylNull*>(owner->Clone());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->FindProperty("time").GetTime(), KTime(-987654321012345));
  EXPECT_EQ(copy->FindProperty("time").GetDouble(), 0.0);
  EXPECT_EQ(copy->FindProperty("numbers").GetVector4(), KZylVector4(1, 2, 3, 4));
  EXPECT_EQ(copy->FindProperty("numbers").GetTime(), KTime());
}

TEST_F(PropertyTest, ColladaReadOptionsHaveStartAndFrameCount) {
  KZylStreamOptionsColladaReader* options = KZylStreamOptionsColladaReader::Create(&manager, "");
  KZylProperty start = options->GetOption("START");
  KZylProperty frames = options->GetOption("FRAME COUNT");
  ASSERT_TRUE(start.IsValid());
  ASSERT_TRUE(frames.IsValid());
  EXPECT_EQ(start.GetPropertyDataType(), eZylTime);
  EXPECT_EQ(frames.GetPropertyDataType(), eZylInteger);
  EXPECT_FALSE(options->GetOption("STOP").IsValid());
  options->SetTimeMode(0, 24.0);
  EXPECT_EQ(options->GetTimeMode(), 0);
  EXPECT_EQ(options->GetCustomFrameRate(), 24.0);
}

TEST_F(PropertyTest, TimeConvertsSecondsToTicks) {
  KTime time;
  time.SetSecondDouble(1.5);
  EXPECT_EQ(time.Get(), 3 * KTime::kTicksPerSecond / 2);
  EXPECT_DOUBLE_EQ(time.GetSecondDouble(), 1.5);
  time.SetSecondDouble(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(time.Get(), 0);
  time.SetSecondDouble(1e300);
  EXPECT_EQ(time.Get(), std::numeric_limits<int64_t>::max());
  time.SetSecondDouble(-1e300);
  EXPECT_EQ(time.Get(), std::numeric_limits<int64_t>::min());
}

}  // namespace
