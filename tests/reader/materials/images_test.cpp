// Images into textures with file names, and texture references of effects into listed textures.

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "tests/support/reader_fixture.h"

namespace zyltest {
namespace {

using namespace zylsdk;

std::string Image(const std::string& id, const std::string& path) {
  return "<image id=\"" + id + "\" name=\"" + id + "-name\"><init_from>" + path + "</init_from></image>";
}

// A `texture` reference; `extra` is its extra element's content (none when empty).
std::string TextureRef(const std::string& image, const std::string& koru = "", bool withExtra = true) {
  std::string text = "<texture texture=\"" + image + "\" texcoord=\"CHANNEL1\">";
  if (withExtra) text += "<extra>" + (koru.empty() ? "" : "<technique profile=\"KORU\">" + koru + "</technique>") + "</extra>";
  return text + "</texture>";
}

std::string PhongWithDiffuse(const std::string& id, const std::string& diffuseContent, const std::string& more = "") {
  return "<effect id=\"" + id + "\"><profile_COMMON><technique sid=\"t\"><phong><diffuse>" + diffuseContent +
         "</diffuse>" + more + "</phong></technique></profile_COMMON></effect>";
}

// Runs the test with another current directory.
class CurrentDirectory {
 public:
  explicit CurrentDirectory(const char* directory) : mSaved(getcwd(nullptr, 0)) { EXPECT_EQ(chdir(directory), 0); }
  ~CurrentDirectory() {
    EXPECT_EQ(chdir(mSaved), 0);
    free(mSaved);
  }

 private:
  char* mSaved;
};

class ImagesTest : public ReaderTest {
 protected:
  KZylTexture* ReadImage(const std::string& path) {
    EXPECT_TRUE(reader->ImportImage(Parse(Image("img", path))));
    return reader->GetState().images.Lookup("img");
  }
  // The uses listed under `key`, or null.
  const TextureUseArray* Uses(const char* key) const { return reader->GetState().textures.Lookup(key); }
  int TextureCount() const { return manager.GetSrcObjectCount<KZylTexture>(); }
  KZylTexture* LastTexture() const { return manager.GetSrcObject<KZylTexture>(TextureCount() - 1); }
};

TEST_F(ImagesTest, DriveLetterFileUrlGivesAWindowsPath) {
  KZylTexture* texture = ReadImage("file:///C|/maps/wood.tga");
  ASSERT_NE(texture, nullptr);
  EXPECT_EQ(texture->GetName(), "img");
  EXPECT_EQ(texture->GetFileName(), "C:/maps/wood.tga");
  // Not expressible from this system's current directory: kept as it is.
  EXPECT_EQ(texture->GetRelativeFileName(), "C:/maps/wood.tga");
  EXPECT_TRUE(Messages().empty());
}

TEST_F(ImagesTest, PosixFileUrlStaysAbsolute) {
  CurrentDirectory cwd("/tmp");
  KZylTexture* texture = ReadImage("file:///tmp/x/wood.tga");
  EXPECT_EQ(texture->GetFileName(), "/tmp/x/wood.tga");
  EXPECT_EQ(texture->GetRelativeFileName(), "x/wood.tga");
  EXPECT_TRUE(Messages().empty());
}

TEST_F(ImagesTest, PathWithoutPrefixIsKeptWithAWarning) {
  KZylTexture* texture = ReadImage("maps/wood.tga");
  EXPECT_EQ(texture->GetFileName(), "maps/wood.tga");
  EXPECT_EQ(texture->GetRelativeFileName(), "maps/wood.tga");
  EXPECT_EQ(CountMessage("Warning: Image file path maps/wood.tga does not begin with \"./\", \"file://\" or "
                         "\"file:///\". Some textures might not be loaded."),
            1);
}

TEST_F(ImagesTest, DotSlashIsRemovedWhereverItStands) {
  KZylTexture* texture = ReadImage("textures/./wood.tga");
  EXPECT_EQ(texture->GetFileName(), "textures/wood.tga");
  EXPECT_TRUE(Messages().empty());
}

TEST_F(ImagesTest, OnlyOnePrefixIsRemoved) {
  EXPECT_EQ(ReadImage("file://./maps/wood.tga")->GetFileName(), "./maps/wood.tga");
}

TEST_F(ImagesTest, FileUrlWithTwoSlashesLosesIt) {
  KZylTexture* texture = ReadImage("file://maps/wood.tga");
  EXPECT_EQ(texture->GetFileName(), "maps/wood.tga");
  EXPECT_EQ(texture->GetRelativeFileName(), "maps/wood.tga");
}

TEST_F(ImagesTest, ImageWithoutInitFromIsAnErrorAndItsTexturesAreNotFound) {
  EXPECT_FALSE(reader->ImportImage(Parse("<image id=\"sky\"/>")));
  EXPECT_EQ(CountMessage("ERROR: Image sky has no input file."), 1);
  EXPECT_EQ(reader->GetState().images.GetCount(), 0);
  EXPECT_EQ(TextureCount(), 0);

  EXPECT_FALSE(reader->ImportTexture(Parse(TextureRef("sky")), "fx", KZylLayerElement::eDiffuseTextures));
  EXPECT_EQ(CountMessage("ERROR: Image not found: sky"), 1);
  // The texture was made but is listed nowhere and has no file.
  ASSERT_EQ(TextureCount(), 1);
  EXPECT_EQ(LastTexture()->GetFileName(), "");
  EXPECT_EQ(Uses("fx"), nullptr);
}

TEST_F(ImagesTest, TextureWithoutExtraIsBare) {
  ReadImage("./wood.tga");
  EXPECT_TRUE(reader->ImportTexture(Parse(TextureRef("img", "", false)), "fx", KZylLayerElement::eDiffuseTextures));
  ASSERT_EQ(TextureCount(), 2);
  KZylTexture* texture = LastTexture();
  EXPECT_EQ(texture->GetName(), "img");
  EXPECT_EQ(texture->GetFileName(), "");
  EXPECT_EQ(reader->GetState().textures.GetCount(), 0);
}

TEST_F(ImagesTest, TextureTakesTheImageFilesAndIsListedUnderTheEffect) {
  ReadImage("./maps/wood.tga");
  EXPECT_TRUE(reader->ImportTexture(Parse(TextureRef("img")), "fx", KZylLayerElement::eSpecularTextures));
  KZylTexture* texture = LastTexture();
  EXPECT_NE(texture, reader->GetState().images.Lookup("img"));
  EXPECT_EQ(texture->GetName(), "img");
  EXPECT_EQ(texture->GetFileName(), "maps/wood.tga");
  EXPECT_EQ(texture->GetRelativeFileName(), "maps/wood.tga");
  // No vendor technique: the defaults stay.
  EXPECT_EQ(texture->GetWrapModeU(), KZylTexture::eRepeat);
  EXPECT_EQ(texture->GetBlendMode(), KZylTexture::eNormal);
  const TextureUseArray* uses = Uses("fx");
  ASSERT_NE(uses, nullptr);
  ASSERT_EQ(uses->GetCount(), 1);
  EXPECT_EQ((*uses)[0].texture, texture);
  EXPECT_EQ((*uses)[0].layerIndex, 0);
  EXPECT_EQ((*uses)[0].layerKind, KZylLayerElement::eSpecularTextures);
}

TEST_F(ImagesTest, WrapFalseInAnyCaseClamps) {
  ReadImage("./wood.tga");
  struct Case {
    const char* u;
    const char* v;
    KZylTexture::EWrapMode expectedU;
    KZylTexture::EWrapMode expectedV;
  };
  const Case cases[] = {{"false", "TRUE", KZylTexture::eClamp, KZylTexture::eRepeat},
                        {"FaLsE", "no", KZylTexture::eClamp, KZylTexture::eRepeat},
                        {"true", "False", KZylTexture::eRepeat, KZylTexture::eClamp}};
  for (const Case& c : cases) {
    reader->ImportTexture(Parse(TextureRef("img", std::string("<wrapU>") + c.u + "</wrapU><wrapV>" + c.v + "</wrapV>")),
                          "fx", KZylLayerElement::eDiffuseTextures);
    EXPECT_EQ(LastTexture()->GetWrapModeU(), c.expectedU) << c.u;
    EXPECT_EQ(LastTexture()->GetWrapModeV(), c.expectedV) << c.v;
    EXPECT_EQ(LastTexture()->GetMaterialUse(), 0);
  }
  EXPECT_TRUE(Messages().empty());
}

TEST_F(ImagesTest, BlendModes) {
  ReadImage("./wood.tga");
  const char* const modes[][2] = {{"none", "0"}, {"ADD", "1"}, {"MULTIPLY", "1"}, {"screen", "1"}};
  for (const auto& mode : modes) {
    reader->ImportTexture(Parse(TextureRef("img", std::string("<blend_mode>") + mode[0] + "</blend_mode>")), "fx",
                          KZylLayerElement::eDiffuseTextures);
    EXPECT_EQ(LastTexture()->GetBlendMode(), mode[1][0] == '1' ? KZylTexture::eAdditive : KZylTexture::eNormal)
        << mode[0];
  }
  // The unknown value is not named, and only the first one is reported.
  EXPECT_EQ(CountMessage("Warning: texture blend mode not recognized: blend_mode"), 1);
  EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(ImagesTest, UnknownTextureSettingIsReportedOnce) {
  ReadImage("./wood.tga");
  for (int i = 0; i < 2; ++i)
    reader->ImportTexture(Parse(TextureRef("img", "<offsetU>0.5</offsetU><wrapU>FALSE</wrapU>")), "fx",
                          KZylLayerElement::eDiffuseTextures);
  EXPECT_EQ(CountMessage("Warning: this texture parameter not supported: offsetU"), 1);
  EXPECT_EQ(LastTexture()->GetWrapModeU(), KZylTexture::eClamp);
}

TEST_F(ImagesTest, TwoTexturesOfOneEffectShareOneArrayListedTwice) {
  ReadImage("./wood.tga");
  ASSERT_TRUE(reader->ImportEffect(Parse(PhongWithDiffuse("fx", TextureRef("img") + TextureRef("img")))));
  const auto& textures = reader->GetState().textures;
  ASSERT_EQ(textures.GetCount(), 2);
  EXPECT_EQ(textures.GetId(0), "fx");
  EXPECT_EQ(textures.GetId(1), "fx");
  EXPECT_EQ(textures.Get(0), textures.Get(1));
  ASSERT_EQ(textures.Get(0)->GetCount(), 2);
  EXPECT_NE((*textures.Get(0))[0].texture, (*textures.Get(0))[1].texture);
  EXPECT_EQ(TextureCount(), 3);
}

TEST_F(ImagesTest, TexturesFollowTheirParameterChannel) {
  ReadImage("./wood.tga");
  const std::string more = "<emission>" + TextureRef("img") + "</emission><ambient>" + TextureRef("img") +
                           "</ambient><specular>" + TextureRef("img") + "</specular><reflective>" + TextureRef("img") +
                           "</reflective><transparent>" + TextureRef("img") + "</transparent><shininess>" +
                           TextureRef("img") + "</shininess>";
  ASSERT_TRUE(reader->ImportEffect(Parse(PhongWithDiffuse("fx", TextureRef("img"), more))));
  const TextureUseArray* uses = Uses("fx");
  ASSERT_NE(uses, nullptr);
  std::vector<int> kinds;
  for (const TextureUse& use : *uses) kinds.push_back(use.layerKind);
  // Shininess has no texture channel.
  EXPECT_EQ(kinds, std::vector<int>({3, 10, 12, 15, 22, 20}));
}

TEST_F(ImagesTest, MaterialsTakeTheEffectsListingsOneEach) {
  ReadImage("./wood.tga");
  ASSERT_TRUE(reader->ImportEffect(Parse(PhongWithDiffuse("fx", TextureRef("img")))));
  ASSERT_TRUE(reader->ImportMaterial(Parse("<material id=\"m1\"><instance_effect url=\"#fx\"/></material>")));
  ASSERT_TRUE(reader->ImportMaterial(Parse("<material id=\"m2\"><instance_effect url=\"#fx\"/></material>")));
  const auto& textures = reader->GetState().textures;
  ASSERT_EQ(textures.GetCount(), 1);
  EXPECT_EQ(textures.GetId(0), "m1");
  EXPECT_EQ(Uses("m2"), nullptr);
  EXPECT_EQ(Uses("fx"), nullptr);
}

// COLLADA 1.4.1 effects name a sampler, which names a surface, which names the image.
TEST_F(ImagesTest, SamplerParameterLeadsToTheImage) {
  ReadImage("./wood.tga");
  const std::string effect =
      "<effect id=\"fx\"><profile_COMMON>"
      "<newparam sid=\"wood-surface\"><surface type=\"2D\"><init_from>img</init_from></surface></newparam>"
      "<newparam sid=\"wood-sampler\"><sampler2D><source>wood-surface</source></sampler2D></newparam>"
      "<technique sid=\"t\"><lambert><diffuse>" +
      TextureRef("wood-sampler") + "</diffuse></lambert></technique></profile_COMMON></effect>";
  ASSERT_TRUE(reader->ImportEffect(Parse(effect)));
  const TextureUseArray* uses = Uses("fx");
  ASSERT_NE(uses, nullptr);
  ASSERT_EQ(uses->GetCount(), 1);
  EXPECT_EQ((*uses)[0].texture->GetName(), "img");
  EXPECT_EQ((*uses)[0].texture->GetFileName(), "wood.tga");
  EXPECT_TRUE(Messages().empty());
}

TEST_F(ImagesTest, SamplerWithoutSurfaceFallsBackToItsName) {
  ReadImage("./wood.tga");
  const std::string effect =
      "<effect id=\"fx\"><newparam sid=\"s\"><sampler2D><source>missing</source></sampler2D></newparam>"
      "<profile_COMMON><technique sid=\"t\"><lambert><diffuse>" +
      TextureRef("s") + "</diffuse></lambert></technique></profile_COMMON></effect>";
  ASSERT_TRUE(reader->ImportEffect(Parse(effect)));
  EXPECT_EQ(CountMessage("ERROR: Image not found: s"), 1);
  EXPECT_EQ(Uses("fx"), nullptr);
}

}  // namespace
}  // namespace zyltest
