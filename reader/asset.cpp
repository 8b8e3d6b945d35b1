// The document's `asset`: axis system, unit and document information.

#include <charconv>
#include <cstring>

#include "reader/collada_reader.h"
#include "reader/dom/dom.h"

namespace zylsdk {
namespace {

// The smallest accepted metre factor: 1e-4 as a single-precision number.
constexpr double kSmallestMeter = 9.999999747378752e-05;

// Reads a leading number like scanf's "%lf" (white space first), in the C locale; `value` is
// left untouched when the text does not start with a number.
void ScanDouble(const KString& text, double& value) {
  const char* p = text.Buffer();
  while (*p == ' ' || *p == '\t' || *p == '\n' || *p == '\r') ++p;
  if (*p == '+' && p[1] != '-') ++p;
  double parsed;
  std::from_chars_result result = std::from_chars(p, p + std::strlen(p), parsed, std::chars_format::general);
  if (result.ec == std::errc()) value = parsed;
}

}  // namespace

bool KZylReaderCollada::ImportAsset(DaeElement* asset, KZylScene& scene, KZylSceneInfo& sceneInfo) {
  for (DaeElement* child = firstChildElement(asset); child; child = nextSiblingElement(child)) {
    const char* name = DAE_GetName(child);
    if (std::strcmp(name, "up_axis") == 0) {
      KString axis = DAE_GetContent(child);
      if (axis == "X_UP")
        scene.GetGlobalSettings().SetAxisSystem(KZylAxisSystem(KZylAxisSystem::eXAxis, 2, 0));
      else if (axis == "Y_UP")
        scene.GetGlobalSettings().SetAxisSystem(KZylAxisSystem(KZylAxisSystem::eYAxis, 2, 0));
      else if (axis == "Z_UP")
        scene.GetGlobalSettings().SetAxisSystem(KZylAxisSystem(KZylAxisSystem::eZAxis, -2, 0));
      else
        AddNotificationWarning("Unrecognized up_axis value: " + axis);
    } else if (std::strcmp(name, "unit") == 0) {
      KString meterText = DAE_GetProperty(child, "meter");
      double meter = 1.0;  // a unit without a factor is one metre
      ScanDouble(meterText, meter);
      if (meter < kSmallestMeter) {
        AddNotificationWarning("Meter conversion factor is too small or invalid: " + meterText + ". Using 1 instead.");
        meter = 1.0;
      }
      // The kit counts in centimetres.
      scene.GetGlobalSettings().SetSystemUnit(KZylSystemUnit(meter * 100.0));
    } else if (std::strcmp(name, "contributor") == 0) {
      for (DaeElement* field = firstChildElement(child); field; field = nextSiblingElement(field))
        if (DAE_IsElement(field, "author")) sceneInfo.mAuthor = DAE_GetContent(field);
    } else if (std::strcmp(name, "comments") == 0) {
      sceneInfo.mComment = DAE_GetContent(child);
    } else if (std::strcmp(name, "title") == 0) {
      sceneInfo.mTitle = DAE_GetContent(child);
    } else if (std::strcmp(name, "subject") == 0) {
      sceneInfo.mSubject = DAE_GetContent(child);
    } else if (std::strcmp(name, "keywords") == 0) {
      sceneInfo.mKeywords = DAE_GetContent(child);
    } else if (std::strcmp(name, "revision") == 0) {
      sceneInfo.mRevision = DAE_GetContent(child);
    }
  }
  return true;
}

}  // namespace zylsdk
