// Effects and materials: the common profile of an effect into a phong, lambert or plain surface
// material, and each `material` into a named copy of its effect's material.

#include <iterator>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "reader/dom/numbers.h"

namespace zylsdk {
namespace {

using ELayerElementType = KZylLayerElement::ELayerElementType;

// Where a shading parameter's value comes from.
enum class ValueSource {
  kColor,         // a `color` child
  kFloat,         // a `float` child
  kFloatAsColor,  // a `float` child read as a colour: how `transparent` has always been read
  kUnsupported,   // no value: the parameter is reported once per reader
};

// How one shading parameter of an effect fills the material.
struct ParameterRule {
  const char* parameter;
  ValueSource source;
  const char* property;  // the property that receives the value
  const char* factor;    // a factor property set to 1 with the value, or null
  ELayerElementType textures;  // the layer kind of its textures; eUndefined when it has none
};

constexpr ELayerElementType kNoTextures = KZylLayerElement::eUndefined;

// Phong and lambert set the class's own properties.
const ParameterRule kPhongRules[] = {
    {"emission", ValueSource::kColor, "EmissiveColor", "EmissiveFactor", KZylLayerElement::eEmissiveTextures},
    {"ambient", ValueSource::kColor, "AmbientColor", "AmbientFactor", KZylLayerElement::eAmbientTextures},
    {"diffuse", ValueSource::kColor, "DiffuseColor", "DiffuseFactor", KZylLayerElement::eDiffuseTextures},
    {"specular", ValueSource::kColor, "SpecularColor", "SpecularFactor", KZylLayerElement::eSpecularTextures},
    {"shininess", ValueSource::kFloat, "Shininess", nullptr, kNoTextures},
    {"reflective", ValueSource::kColor, "ReflectionColor", nullptr, KZylLayerElement::eReflectionTextures},
    {"reflectivity", ValueSource::kFloat, "ReflectionFactor", nullptr, kNoTextures},
    {"transparency", ValueSource::kFloat, "TransparencyFactor", nullptr, kNoTextures},
    {"transparent", ValueSource::kFloatAsColor, "TransparentColor", nullptr, KZylLayerElement::eTransparentTextures},
    {"index_of_refraction", ValueSource::kUnsupported, nullptr, nullptr, kNoTextures},
};

const ParameterRule kLambertRules[] = {
    {"emission", ValueSource::kColor, "EmissiveColor", "EmissiveFactor", KZylLayerElement::eEmissiveTextures},
    {"ambient", ValueSource::kColor, "AmbientColor", "AmbientFactor", KZylLayerElement::eAmbientTextures},
    {"diffuse", ValueSource::kColor, "DiffuseColor", "DiffuseFactor", KZylLayerElement::eDiffuseTextures},
    {"transparency", ValueSource::kFloat, "TransparencyFactor", nullptr, kNoTextures},
    {"transparent", ValueSource::kFloatAsColor, "TransparentColor", nullptr, KZylLayerElement::eTransparentTextures},
    {"reflective", ValueSource::kUnsupported, nullptr, nullptr, kNoTextures},
    {"reflectivity", ValueSource::kUnsupported, nullptr, nullptr, kNoTextures},
    {"index_of_refraction", ValueSource::kUnsupported, nullptr, nullptr, kNoTextures},
};

// Other shading models keep their values in new properties under the standard names.
const ParameterRule kPlainRules[] = {
    {"emission", ValueSource::kColor, KZylSurfaceMaterial::sEmissive, nullptr, KZylLayerElement::eEmissiveTextures},
    {"ambient", ValueSource::kColor, KZylSurfaceMaterial::sAmbient, nullptr, KZylLayerElement::eAmbientTextures},
    {"diffuse", ValueSource::kColor, KZylSurfaceMaterial::sDiffuse, nullptr, KZylLayerElement::eDiffuseTextures},
    {"specular", ValueSource::kColor, KZylSurfaceMaterial::sSpecular, nullptr, KZylLayerElement::eSpecularTextures},
    {"shininess", ValueSource::kFloat, KZylSurfaceMaterial::sShininess, nullptr, kNoTextures},
    {"transparency", ValueSource::kFloat, KZylSurfaceMaterial::sTransparencyFactor, nullptr, kNoTextures},
    {"transparent", ValueSource::kUnsupported, nullptr, nullptr, kNoTextures},
    {"reflective", ValueSource::kUnsupported, nullptr, nullptr, kNoTextures},
    {"reflectivity", ValueSource::kUnsupported, nullptr, nullptr, kNoTextures},
    {"index_of_refraction", ValueSource::kUnsupported, nullptr, nullptr, kNoTextures},
};

struct RuleSet {
  const ParameterRule* begin;
  const ParameterRule* end;
  bool newProperties;  // the values go into new dynamic properties
};

// The rule of a parameter (names compared exactly); null when the shading model ignores it.
const ParameterRule* FindRule(const RuleSet& rules, const char* parameter) {
  for (const ParameterRule* rule = rules.begin; rule != rules.end; ++rule)
    if (KString(rule->parameter) == parameter) return rule;
  return nullptr;
}

// Stores the parameter's value, when its value child is there.
void SetValue(KZylSurfaceMaterial& material, const ParameterRule& rule, bool newProperty, const DaeElement* parameter) {
  const bool isColor = rule.source == ValueSource::kColor;
  DaeElement* child = findChildByType(parameter, isColor ? "color" : "float");
  if (!child) return;
  const KString text = DAE_GetContent(child);
  KZylProperty property = newProperty ? KZylProperty::Create(&material, rule.property, isColor ? DTColor3 : DTDouble, "")
                                      : material.FindProperty(rule.property);
  if (rule.source == ValueSource::kFloat) {
    const char* cursor = text.Buffer();
    property.Set(strtodouble(&cursor));
  } else {
    property.Set(strtocolor(text.Buffer()));
  }
  if (rule.factor) material.FindProperty(rule.factor).Set(1.0);
}

}  // namespace

bool KZylReaderCollada::ImportEffect(DaeElement* effect) {
  const ReadingAt reading(*this, effect);
  const KString id = DAE_GetProperty(effect, "id");
  if (mComplete) ImportEffectImages(effect);
  DaeElement* profile = findChildByType(effect, "profile_COMMON");
  DaeElement* shading = firstChildElement(getTechniqueNode(profile));
  if (!shading && mComplete) {
    // Materials and their bindings still need something to stand for the effect.
    AddNotificationWarning("effect " + id + " has no profile_COMMON shading: read as a default lambert");
    mState->effects.Add(id, KZylSurfaceLambert::Create(mManager, id.Buffer()));
    return true;
  }
  if (!profile) {
    AddNotificationError("no common profile found for library " + id);
    return false;
  }
  if (!shading) return false;

  // The shading model's name is compared without case; parameter names are exact.
  KZylSurfaceMaterial* material = nullptr;
  RuleSet rules;
  const KString model = DAE_GetName(shading);
  if (model.CompareNoCase("phong") == 0) {
    KZylSurfacePhong* phong = KZylSurfacePhong::Create(mManager, id.Buffer());
    // Not reflective unless the effect says so.
    phong->GetReflectionFactor().Set(0.0);
    material = phong;
    rules = {std::begin(kPhongRules), std::end(kPhongRules), false};
  } else if (model.CompareNoCase("lambert") == 0) {
    material = KZylSurfaceLambert::Create(mManager, id.Buffer());
    rules = {std::begin(kLambertRules), std::end(kLambertRules), false};
  } else {
    material = KZylSurfaceMaterial::Create(mManager, id.Buffer());
    material->GetShadingModel().Set(model);
    rules = {std::begin(kPlainRules), std::end(kPlainRules), true};
  }

  for (DaeElement* parameter = firstChildElement(shading); parameter; parameter = nextSiblingElement(parameter)) {
    const char* name = DAE_GetName(parameter);
    const ParameterRule* rule = FindRule(rules, name);
    if (!rule) continue;
    if (rule->source == ValueSource::kUnsupported) {
      WarnOnce(name, KString("Material parameter not supported: ") + name);
      continue;
    }
    SetValue(*material, *rule, rules.newProperties, parameter);
    if (rule->textures == kNoTextures) continue;
    KArrayTemplate<DaeElement*> textures;
    findChildrenByType(parameter, "texture", textures);
    // A texture that cannot be made does not stop the effect.
    for (DaeElement* texture : textures) ImportTexture(texture, id, rule->textures);
  }
  mState->effects.Add(id, material);
  return true;
}

void KZylReaderCollada::ImportEffectImages(DaeElement* effect) {
  // COLLADA 1.4 lets an effect, and each of its profiles, declare images of their own.
  for (DaeElement* child = firstChildElement(effect); child; child = nextSiblingElement(child)) {
    if (DAE_IsElement(child, "image")) ImportImage(child);
    for (DaeElement* inner = firstChildElement(child); inner; inner = nextSiblingElement(inner))
      if (DAE_IsElement(inner, "image")) ImportImage(inner);
  }
}

bool KZylReaderCollada::ImportMaterial(DaeElement* materialElement) {
  const ReadingAt reading(*this, materialElement);
  const KString id = DAE_GetProperty(materialElement, "id");
  DaeElement* instance = findChildByType(materialElement, "instance_effect");
  if (!instance) {
    AddNotificationError("no instance effect found for library " + id);
    return false;
  }
  const KString url = DAE_GetProperty(instance, "url");
  const KString effectId = url.Mid(1);
  const int effect = mState->effects.Find(effectId);
  if (effect < 0) {
    AddNotificationError("Effect not found: " + url);
    return false;
  }

  // Each material owns its copy, even when several instance one effect.
  auto* copy = static_cast<KZylSurfaceMaterial*>(mState->effects.Get(effect)->Clone(2));
  copy->SetName(id);
  mState->materials.Add(id, copy);
  if (mComplete) mState->materialEffects[id] = effectId;

  // The effect's textures now belong to this material; one listing of them moves per material.
  const int textures = mState->textures.Find(effectId);
  if (textures >= 0) {
    TextureUseArray* uses = mState->textures.Get(textures);
    mState->textures.RemoveAt(textures);
    mState->textures.Add(id, uses);
  }
  return true;
}

}  // namespace zylsdk
