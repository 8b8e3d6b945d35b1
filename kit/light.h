#pragma once
// KZylLight: a light node attribute.
//
// Defaults of a new light: point light, colour white (1, 1, 1, 1), intensity 100 (percent),
// cone angle 45 degrees, fog 50.

#include "kit/node_attribute.h"

namespace zylsdk {

class KZylLight : public KZylNodeAttribute {
  KZYL_DECLARE_CLASS(KZylLight)
 public:
  enum ELightType { ePoint = 0, eDirectional = 1, eSpot = 2 };

  EAttributeType GetAttributeType() const override { return eLight; }

  ELightType GetLightType() const { return mValues.type; }
  void SetLightType(ELightType type) { mValues.type = type; }
  const KZylColor& GetDefaultColor() const { return mValues.color; }
  void SetDefaultColor(const KZylColor& color) { mValues.color = color; }
  // Percent: 100 is the nominal intensity.
  double GetDefaultIntensity() const { return mValues.intensity; }
  void SetDefaultIntensity(double intensity) { mValues.intensity = intensity; }
  // Degrees.
  double GetDefaultConeAngle() const { return mValues.coneAngle; }
  void SetDefaultConeAngle(double degrees) { mValues.coneAngle = degrees; }
  double GetDefaultFog() const { return mValues.fog; }
  void SetDefaultFog(double fog) { mValues.fog = fog; }

 protected:
  using KZylNodeAttribute::KZylNodeAttribute;
  void CopyFrom(const KZylObject& source) override;

 private:
  struct Values {
    ELightType type = ePoint;
    KZylColor color{1.0, 1.0, 1.0, 1.0};
    double intensity = 100.0;
    double coneAngle = 45.0;
    double fog = 50.0;
  };
  Values mValues;
};

}  // namespace zylsdk
