#pragma once
// Surface materials: the plain KZylSurfaceMaterial (its shading model in a property, any other
// parameters as dynamic properties), KZylSurfaceLambert and KZylSurfacePhong.
//
// Static properties and their defaults:
//   every material: ShadingModel "unknown" ("lambert" and "phong" on those classes);
//   lambert and phong: EmissiveColor (0, 0, 0), EmissiveFactor 1, AmbientColor (0.2, 0.2, 0.2),
//     AmbientFactor 1, DiffuseColor (0.8, 0.8, 0.8), DiffuseFactor 1, TransparentColor
//     (0, 0, 0), TransparencyFactor 0;
//   phong adds: SpecularColor (0.2, 0.2, 0.2), SpecularFactor 1, Shininess 20,
//     ReflectionColor (0, 0, 0), ReflectionFactor 1.
// Colours are three doubles (r, g, b); setting a KZylColor drops its alpha.

#include "kit/object.h"

namespace zylsdk {

class KZylSurfaceMaterial : public KZylObject {
  KZYL_DECLARE_CLASS(KZylSurfaceMaterial)
 public:
  // Standard property names, for dynamic properties of plain materials.
  static const char* const sEmissive;
  static const char* const sAmbient;
  static const char* const sDiffuse;
  static const char* const sSpecular;
  static const char* const sShininess;
  static const char* const sTransparencyFactor;

  KZylProperty GetShadingModel() const { return FindProperty("ShadingModel"); }

 protected:
  // `propertyCount`: how many properties the most derived class's constructors add in all.
  KZylSurfaceMaterial(KZylSdkManager& manager, const char* name, const char* shadingModel = "unknown",
                      int propertyCount = 1);
};

class KZylSurfaceLambert : public KZylSurfaceMaterial {
  KZYL_DECLARE_CLASS(KZylSurfaceLambert)
 public:
  KZylProperty GetEmissiveColor() const { return FindProperty("EmissiveColor"); }
  KZylProperty GetEmissiveFactor() const { return FindProperty("EmissiveFactor"); }
  KZylProperty GetAmbientColor() const { return FindProperty("AmbientColor"); }
  KZylProperty GetAmbientFactor() const { return FindProperty("AmbientFactor"); }
  KZylProperty GetDiffuseColor() const { return FindProperty("DiffuseColor"); }
  KZylProperty GetDiffuseFactor() const { return FindProperty("DiffuseFactor"); }
  KZylProperty GetTransparentColor() const { return FindProperty("TransparentColor"); }
  KZylProperty GetTransparencyFactor() const { return FindProperty("TransparencyFactor"); }

 protected:
  KZylSurfaceLambert(KZylSdkManager& manager, const char* name, const char* shadingModel = "lambert",
                     int propertyCount = 9);
};

class KZylSurfacePhong : public KZylSurfaceLambert {
  KZYL_DECLARE_CLASS(KZylSurfacePhong)
 public:
  KZylProperty GetSpecularColor() const { return FindProperty("SpecularColor"); }
  KZylProperty GetSpecularFactor() const { return FindProperty("SpecularFactor"); }
  KZylProperty GetShininess() const { return FindProperty("Shininess"); }
  KZylProperty GetReflectionColor() const { return FindProperty("ReflectionColor"); }
  KZylProperty GetReflectionFactor() const { return FindProperty("ReflectionFactor"); }

 protected:
  KZylSurfacePhong(KZylSdkManager& manager, const char* name);
};

}  // namespace zylsdk
