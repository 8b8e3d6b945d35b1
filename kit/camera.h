#pragma once
// KZylCamera: a camera node attribute.
//
// Defaults of a new camera: perspective; position (0, 0, 0), interest (0, 0, -1), up (0, 1, 0);
// field of view 45 degrees; aperture mode vertical; aspect window size 640 x 480; near plane
// 10, far plane 4000; ortho zoom 1; focus distance source camera interest, specific distance
// 0; aperture 0.816 x 0.612 inches; squeeze ratio 1; aperture format and format 0 (custom).

#include "kit/node_attribute.h"

namespace zylsdk {

class KZylCamera : public KZylNodeAttribute {
  KZYL_DECLARE_CLASS(KZylCamera)
 public:
  enum EProjectionType { ePerspective = 0, eOrthogonal = 1 };
  enum EApertureMode { eHorizAndVert = 0, eHorizontal = 1, eVertical = 2, eFocalLength = 3 };
  enum EAspectRatioMode { eWindowSize = 0, eFixedRatio = 1, eFixedResolution = 2, eFixedWidth = 3, eFixedHeight = 4 };
  enum EFocusDistanceSource { eCameraInterest = 0, eSpecificDistance = 1 };

  EAttributeType GetAttributeType() const override { return eCamera; }

  EProjectionType GetProjectionType() const { return mValues.projection; }
  void SetProjectionType(EProjectionType type) { mValues.projection = type; }

  const KZylVector4& GetPosition() const { return mValues.position; }
  void SetPosition(const KZylVector4& position) { mValues.position = position; }
  const KZylVector4& GetDefaultCameraInterestPosition() const { return mValues.interest; }
  void SetDefaultCameraInterestPosition(const KZylVector4& interest) { mValues.interest = interest; }
  const KZylVector4& GetUpVector() const { return mValues.upVector; }
  void SetUpVector(const KZylVector4& up) { mValues.upVector = up; }

  // Degrees.
  double GetDefaultFieldOfView() const { return mValues.fieldOfView; }
  void SetDefaultFieldOfView(double degrees) { mValues.fieldOfView = degrees; }
  EApertureMode GetApertureMode() const { return mValues.apertureMode; }
  void SetApertureMode(EApertureMode mode) { mValues.apertureMode = mode; }

  void SetAspect(EAspectRatioMode mode, double width, double height);
  EAspectRatioMode GetAspectRatioMode() const { return mValues.aspectMode; }
  double GetAspectWidth() const { return mValues.aspectWidth; }
  double GetAspectHeight() const { return mValues.aspectHeight; }

  double GetNearPlane() const { return mValues.nearPlane; }
  void SetNearPlane(double distance) { mValues.nearPlane = distance; }
  double GetFarPlane() const { return mValues.farPlane; }
  void SetFarPlane(double distance) { mValues.farPlane = distance; }
  double GetOrthoZoom() const { return mValues.orthoZoom; }
  void SetOrthoZoom(double zoom) { mValues.orthoZoom = zoom; }

  EFocusDistanceSource GetFocusDistanceSource() const { return mValues.focusSource; }
  void SetFocusDistanceSource(EFocusDistanceSource source) { mValues.focusSource = source; }
  double GetSpecificDistance() const { return mValues.specificDistance; }
  void SetSpecificDistance(double distance) { mValues.specificDistance = distance; }

  // Inches.
  double GetApertureWidth() const { return mValues.apertureWidth; }
  void SetApertureWidth(double inches) { mValues.apertureWidth = inches; }
  double GetApertureHeight() const { return mValues.apertureHeight; }
  void SetApertureHeight(double inches) { mValues.apertureHeight = inches; }
  double GetSqueezeRatio() const { return mValues.squeezeRatio; }
  void SetSqueezeRatio(double ratio) { mValues.squeezeRatio = ratio; }
  int GetApertureFormat() const { return mValues.apertureFormat; }
  void SetApertureFormat(int format) { mValues.apertureFormat = format; }
  int GetFormat() const { return mValues.format; }
  void SetFormat(int format) { mValues.format = format; }

 protected:
  using KZylNodeAttribute::KZylNodeAttribute;
  void CopyFrom(const KZylObject& source) override;

 private:
  // Every value of the camera, kept together so that copies take them all.
  struct Values {
    EProjectionType projection = ePerspective;
    KZylVector4 position{0.0, 0.0, 0.0, 1.0};
    KZylVector4 interest{0.0, 0.0, -1.0, 1.0};
    KZylVector4 upVector{0.0, 1.0, 0.0, 0.0};
    double fieldOfView = 45.0;
    EApertureMode apertureMode = eVertical;
    EAspectRatioMode aspectMode = eWindowSize;
    double aspectWidth = 640.0;
    double aspectHeight = 480.0;
    double nearPlane = 10.0;
    double farPlane = 4000.0;
    double orthoZoom = 1.0;
    EFocusDistanceSource focusSource = eCameraInterest;
    double specificDistance = 0.0;
    double apertureWidth = 0.816;
    double apertureHeight = 0.612;
    double squeezeRatio = 1.0;
    int apertureFormat = 0;
    int format = 0;
  };
  Values mValues;
};

}  // namespace zylsdk
