// The document's `asset`: axis system, unit and document information.

#include <locale.h>
#include <stdlib.h>

#include <cerrno>
#include <cmath>
#include <cstring>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"

namespace zylsdk {
namespace {

// The smallest accepted metre factor: 1e-4 as a single-precision number.
constexpr double kSmallestMeter = 9.999999747378752e-05;

// Reads a leading number as scanf's "%lf" does (white space first, hexadecimal forms, a value
// too small to represent read as 0 or as the nearest subnormal), in the C locale whatever the
// process locale is. `value` is left untouched when the text does not start with a number, and
// when the number is too large: an infinite unit would spoil every distance.
void ScanDouble(const KString& text, double& value) {
  static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
  const char* start = text.Buffer();
  char* end = nullptr;
  errno = 0;
  const double parsed = strtod_l(start, &end, cLocale);
  if (end == start) return;
  if (errno == ERANGE && std::fabs(parsed) > 1.0) return;
  value = parsed;
}

}  // namespace

bool KZylReaderCollada::ImportAsset(DaeElement* asset, KZylScene& scene, KZylSceneInfo& sceneInfo) {
  const ReadingAt reading(*this, asset);
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
