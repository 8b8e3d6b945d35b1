// A `camera` of library_cameras into a camera node attribute: the common optics (projection,
// field of view, clipping planes, zoom, aspect) and the vendor technique "KORU" (apertures and
// squeeze).

#include <cmath>

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "reader/nodes/element_numbers.h"
#include "reader/objects/parameters.h"

namespace zylsdk {
namespace {

// 2.54 as a float: apertures are converted from centimetres with it, as they always were.
constexpr double kCentimetresPerInch = static_cast<double>(2.54f);

// Centimetres to inches, truncated towards minus infinity to five decimals.
double ApertureInches(double centimetres) {
  const double inches = centimetres / kCentimetresPerInch;
  const double scaled = inches * 100000.0;
  // So large that it has no decimals to cut.
  if (!std::isfinite(scaled)) return inches;
  return std::floor(scaled) / 100000.0;
}

// What the parameters of one projection element say.
struct Optics {
  double xfov = -1.0;
  double yfov = -1.0;
  double width = 0.0;
  double height = 0.0;
};

// Applies one parameter of a projection element; false for a name it does not know.
bool ReadOpticsParameter(const DaeElement* parameter, KZylCamera& camera, Optics& optics) {
  auto is = [parameter](const char* name) { return DAE_IsElement(parameter, name); };
  const double value = ReadElementNumber(parameter);
  if (is("xfov")) {
    optics.xfov = value;
  } else if (is("yfov")) {
    optics.yfov = value;
  } else if (is("znear")) {
    camera.SetNearPlane(value);
  } else if (is("zfar")) {
    camera.SetFarPlane(value);
  } else if (is("xmag") || is("ymag")) {
    camera.SetOrthoZoom(value);
  } else if (is("aspect_ratio")) {
    // Only a usable ratio changes the aspect.
    const double width = camera.GetAspectWidth();
    const double height = value > 0.0 ? width / value : 0.0;
    if (value > 0.0 && std::isfinite(value) && std::isfinite(height))
      camera.SetAspect(KZylCamera::eWindowSize, width, height);
  } else if (is("BOTTOM")) {
    optics.height += value;
  } else if (is("TOP")) {
    optics.height -= value;
  } else if (is("LEFT")) {
    optics.width -= value;
  } else if (is("RIGHT")) {
    optics.width += value;
  } else {
    return false;
  }
  return true;
}

void ApplyOptics(const Optics& optics, KZylCamera& camera) {
  // Height is BOTTOM - TOP and width RIGHT - LEFT, signs as they always were.
  if (optics.width != 0.0 && optics.height != 0.0 && std::isfinite(optics.width) && std::isfinite(optics.height))
    camera.SetAspect(KZylCamera::eWindowSize, optics.width, optics.height);
  const bool hasX = optics.xfov >= 0.0;
  const bool hasY = optics.yfov >= 0.0;
  if (hasX && hasY) {
    // Both: the field of view is left as it is.
    camera.SetApertureMode(KZylCamera::eHorizAndVert);
  } else if (hasX) {
    camera.SetDefaultFieldOfView(optics.xfov);
    camera.SetApertureMode(KZylCamera::eHorizontal);
  } else if (hasY) {
    camera.SetDefaultFieldOfView(optics.yfov);
    camera.SetApertureMode(KZylCamera::eVertical);
  }
}

// The vendor technique: apertures in centimetres and the squeeze ratio.
void ReadVendorOptics(KZylReaderCollada& reader, const KString& id, const DaeElement* vendor, KZylCamera& camera) {
  camera.SetDefaultCameraInterestPosition(KZylVector4(0.0, 0.0, -1.0, 1.0));
  camera.SetSpecificDistance(5.0);
  // The apertures do not change the field of view read from the common technique.
  const double fieldOfView = camera.GetDefaultFieldOfView();
  for (DaeElement* parameter = firstChildElement(vendor); parameter; parameter = nextSiblingElement(parameter)) {
    const char* name = DAE_GetName(parameter);
    const double value = ReadElementNumber(parameter);
    if (DAE_IsElement(parameter, "vertical_aperture"))
      camera.SetApertureHeight(ApertureInches(value));
    else if (DAE_IsElement(parameter, "horizontal_aperture"))
      camera.SetApertureWidth(ApertureInches(value));
    else if (DAE_IsElement(parameter, "lens_squeeze"))
      camera.SetSqueezeRatio(value);
    else
      reader.WarnOnce(name, KString("Unrecognized KORU camera parameter: ") + name);
    RegisterParameterTarget(reader, id, parameter);
  }
  camera.SetDefaultFieldOfView(fieldOfView);
}

}  // namespace

bool KZylReaderCollada::ImportCamera(DaeElement* cameraElement) {
  const ReadingAt reading(*this, cameraElement);
  const KString id = DAE_GetProperty(cameraElement, "id");
  KZylCamera* camera = KZylCamera::Create(mManager, "");
  DaeElement* optics = findChildByType(cameraElement, "optics");
  if (!optics) {
    AddNotificationError("Camera node " + id + " has no <optics> node.");
    return mStatus = false;
  }
  DaeElement* common = getTechniqueCommonNode(optics);
  if (!common) {
    AddNotificationError("no <technique> node found for camera node " + id);
    return mStatus = false;
  }

  for (DaeElement* projection = firstChildElement(common); projection; projection = nextSiblingElement(projection)) {
    const char* projectionName = DAE_GetName(projection);
    if (DAE_IsElement(projection, "orthographic")) {
      camera->SetProjectionType(KZylCamera::eOrthogonal);
    } else {
      if (!DAE_IsElement(projection, "perspective"))
        AddNotificationWarning(KString("unknown camera type: ") + projectionName + "." +
                               " Camera type will be set to Perspective.");
      camera->SetProjectionType(KZylCamera::ePerspective);
    }
    Optics values;
    for (DaeElement* parameter = firstChildElement(projection); parameter; parameter = nextSiblingElement(parameter)) {
      const char* name = DAE_GetName(parameter);
      if (!ReadOpticsParameter(parameter, *camera, values))
        WarnOnce(name, KString("Unrecognized camera parameter: ") + name);
      RegisterParameterTarget(*this, id, parameter);
    }
    ApplyOptics(values, *camera);
  }

  if (DaeElement* vendor = getTechniqueNode(optics, "KORU")) ReadVendorOptics(*this, id, vendor, *camera);

  mState->nodeAttributes.Add(id, static_cast<KZylNodeAttribute*>(camera));
  return mStatus = true;
}

}  // namespace zylsdk
