// A `light` of library_lights into a light node attribute. An ambient light makes no object:
// its colour adds to the scene's ambient colour.

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "reader/dom/numbers.h"
#include "reader/nodes/element_numbers.h"
#include "reader/objects/parameters.h"

namespace zylsdk {
namespace {

const char* const kUnsupported = "light parameter not supported by ZYL: <";

// The ambient colours of several lights add up; the alpha is the last one's.
void AddAmbientColor(KZylScene& scene, const KZylColor& color) {
  KZylGlobalLightSettings& settings = scene.GetGlobalLightSettings();
  const KZylColor& ambient = settings.GetAmbientColor();
  settings.SetAmbientColor(KZylColor(ambient.mRed + color.mRed, ambient.mGreen + color.mGreen,
                                     ambient.mBlue + color.mBlue, color.mAlpha));
}

// The light type of a kind element of the common technique; false for ambient and unknown kinds,
// which make no light.
bool LightTypeOf(const DaeElement* kind, KZylLight::ELightType& type) {
  if (DAE_IsElement(kind, "directional"))
    type = KZylLight::eDirectional;
  else if (DAE_IsElement(kind, "point"))
    type = KZylLight::ePoint;
  else if (DAE_IsElement(kind, "spot"))
    type = KZylLight::eSpot;
  else
    return false;
  return true;
}

// One parameter of the common technique. Without a light (ambient or unknown kinds) the colour
// goes to the scene's ambient colour.
void ReadLightParameter(KZylReaderCollada& reader, KZylScene& scene, KZylLight* light, const KString& id,
                        const DaeElement* parameter) {
  const char* name = DAE_GetName(parameter);
  if (DAE_IsElement(parameter, "color")) {
    ElementText text(parameter);
    const KZylColor color = strtocolor(text.c_str());
    if (light)
      light->SetDefaultColor(color);
    else
      AddAmbientColor(scene, color);
  } else if (DAE_IsElement(parameter, "falloff_angle")) {
    // Degrees, as written.
    if (light) light->SetDefaultConeAngle(ReadElementNumber(parameter));
  } else if (DAE_IsElement(parameter, "constant_attenuation") || DAE_IsElement(parameter, "linear_attenuation") ||
             DAE_IsElement(parameter, "quadratic_attenuation") || DAE_IsElement(parameter, "falloff_exponent")) {
    reader.WarnOnce(name, kUnsupported + KString(name) + ">");
  } else {
    reader.AddNotificationWarning(KString("Unknown light parameter <") + name + "> on light \"" + id + "\"");
  }
}

}  // namespace

bool KZylReaderCollada::ImportLight(KZylScene& scene, DaeElement* lightElement) {
  const ReadingAt reading(*this, lightElement);
  const KString id = DAE_GetProperty(lightElement, "id");
  KZylLight* light = nullptr;

  DaeElement* common = getTechniqueCommonNode(lightElement);
  for (DaeElement* kind = firstChildElement(common); kind; kind = nextSiblingElement(kind)) {
    KZylLight::ELightType type;
    if (LightTypeOf(kind, type)) {
      light = KZylLight::Create(mManager, "");
      light->SetLightType(type);
    } else if (!DAE_IsElement(kind, "ambient")) {
      AddNotificationWarning(KString("Unknown light type: ") + DAE_GetName(kind));
    }
    for (DaeElement* parameter = firstChildElement(kind); parameter; parameter = nextSiblingElement(parameter)) {
      ReadLightParameter(*this, scene, light, id, parameter);
      RegisterParameterTarget(*this, id, parameter);
    }
  }

  if (DaeElement* vendor = getTechniqueNode(lightElement, "KORU")) {
    for (DaeElement* parameter = firstChildElement(vendor); parameter; parameter = nextSiblingElement(parameter)) {
      if (DAE_IsElement(parameter, "intensity")) {
        // The kit's intensity is a percentage. An ambient light has no object to take it.
        if (light) light->SetDefaultIntensity(ReadElementNumber(parameter) * 100.0);
        RegisterParameterTarget(*this, id, parameter);
      } else if (DAE_IsElement(parameter, "penumbra_angle")) {
        WarnOnce("penumbra_angle", KString(kUnsupported) + "penumbra_angle>");
      }
    }
  }

  // An ambient light, or one without a common technique, is registered without an object.
  mState->nodeAttributes.Add(id, static_cast<KZylNodeAttribute*>(light));
  return mStatus = true;
}

}  // namespace zylsdk
