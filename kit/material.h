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
  KZylSurfaceMaterial(KZylSdkManager& manager, const char* name);
  // For a derived class, whose constructor makes every property.
  struct ForDerivedClass {};
  KZylSurfaceMaterial(KZylSdkManager& manager, const char* name, ForDerivedClass) : KZylObject(manager, name) {}
  // Adds the properties of every material; `propertyCount`: how many the most derived class
  // adds in all.
  void AddMaterialProperties(const char* shadingModel, int propertyCount);
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
  KZylSurfaceLambert(KZylSdkManager& manager, const char* name);
  KZylSurfaceLambert(KZylSdkManager& manager, const char* name, ForDerivedClass)
      : KZylSurfaceMaterial(manager, name, ForDerivedClass()) {}
  // Adds the properties of every material, then a lambert's.
  void AddLambertProperties(const char* shadingModel, int propertyCount);
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
