// Cameras and lights. Kit cameras look along their node's +X axis with +Y up, kit lights shine
// along the node's -Y axis; glTF cameras and lights look along -Z. Each is therefore placed on
// a child node whose rotation turns -Z onto the kit's direction.

#include <algorithm>
#include <cmath>

#include "gltf/conversion_context.h"
#include "gltf/transforms.h"

namespace zylgltf {

using namespace zylsdk;

namespace {

constexpr double kPi = 3.14159265358979323846;

double Radians(double degrees) { return degrees * kPi / 180.0; }

// Adds a child of `parent` turned by the Euler angles (XYZ, degrees), returns its index.
int AddTurnedChild(ConversionContext& context, tinygltf::Node& parent, const std::string& name, const KZylVector4& angles) {
  tinygltf::Node child;
  child.name = name;
  const std::array<double, 4> q = QuaternionOf(RotationMatrix(angles, eEulerXYZ));
  child.rotation.assign(q.begin(), q.end());
  context.model.nodes.push_back(child);
  const int index = static_cast<int>(context.model.nodes.size() - 1);
  parent.children.push_back(index);
  return index;
}

bool Positive(double value) { return std::isfinite(value) && value > 0.0; }

}  // namespace

void ConvertCamera(ConversionContext& context, const KZylCamera& camera, tinygltf::Node& node) {
  tinygltf::Camera target;
  target.name = camera.GetName().Std();
  const double aspect = Positive(camera.GetAspectWidth()) && Positive(camera.GetAspectHeight())
                            ? camera.GetAspectWidth() / camera.GetAspectHeight()
                            : 0.0;
  const double znear = Positive(camera.GetNearPlane()) ? camera.GetNearPlane() : 0.01;
  const double zfar = std::isfinite(camera.GetFarPlane()) && camera.GetFarPlane() > znear ? camera.GetFarPlane() : 0.0;
  if (camera.GetProjectionType() == KZylCamera::eOrthogonal) {
    target.type = "orthographic";
    const double magnification = Positive(camera.GetOrthoZoom()) ? camera.GetOrthoZoom() : 1.0;
    target.orthographic.ymag = magnification;
    target.orthographic.xmag = magnification * (aspect > 0.0 ? aspect : 1.0);
    target.orthographic.znear = znear;
    target.orthographic.zfar = zfar > 0.0 ? zfar : znear * 1000.0;
  } else {
    target.type = "perspective";
    double fov = Radians(camera.GetDefaultFieldOfView());
    if (camera.GetApertureMode() == KZylCamera::eHorizontal && aspect > 0.0)
      fov = 2.0 * std::atan(std::tan(fov / 2.0) / aspect);
    if (!Positive(fov) || fov >= kPi) {
      fov = Radians(45.0);
      context.LeaveOut("fields of view outside (0, 180) degrees (45 degrees written)");
    }
    target.perspective.yfov = fov;
    target.perspective.aspectRatio = aspect;
    target.perspective.znear = znear;
    target.perspective.zfar = zfar;
  }
  context.model.cameras.push_back(target);
  const int child = AddTurnedChild(context, node, node.name + "_camera", KZylVector4(0.0, -90.0, 0.0));
  context.model.nodes[static_cast<size_t>(child)].camera = static_cast<int>(context.model.cameras.size() - 1);
}

void ConvertLight(ConversionContext& context, const KZylLight& light, tinygltf::Node& node) {
  tinygltf::Light target;
  target.name = light.GetName().Std();
  const KZylColor& color = light.GetDefaultColor();
  auto unit = [](double v) { return std::isfinite(v) ? std::clamp(v, 0.0, 1.0) : 0.0; };
  target.color = {unit(color.mRed), unit(color.mGreen), unit(color.mBlue)};
  const double intensity = light.GetDefaultIntensity() / 100.0;
  target.intensity = std::isfinite(intensity) && intensity >= 0.0 ? intensity : 1.0;
  switch (light.GetLightType()) {
    case KZylLight::eDirectional: target.type = "directional"; break;
    case KZylLight::eSpot: {
      target.type = "spot";
      const double half = Radians(light.GetDefaultConeAngle()) / 2.0;
      target.spot.innerConeAngle = 0.0;
      target.spot.outerConeAngle = Positive(half) ? std::min(half, kPi / 2.0) : kPi / 4.0;
      break;
    }
    default: target.type = "point";
  }
  context.model.lights.push_back(target);
  const int child = AddTurnedChild(context, node, node.name + "_light", KZylVector4(-90.0, 0.0, 0.0));
  tinygltf::Value::Object reference;
  reference["light"] = tinygltf::Value(static_cast<int>(context.model.lights.size() - 1));
  context.model.nodes[static_cast<size_t>(child)].extensions["KHR_lights_punctual"] = tinygltf::Value(reference);
}

}  // namespace zylgltf
