#include "kit/material.h"

#include "kit/manager.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylSurfaceMaterial, KZylObject)
KZYL_IMPLEMENT_CLASS(KZylSurfaceLambert, KZylSurfaceMaterial)
KZYL_IMPLEMENT_CLASS(KZylSurfacePhong, KZylSurfaceLambert)

const char* const KZylSurfaceMaterial::sEmissive = "EmissiveColor";
const char* const KZylSurfaceMaterial::sAmbient = "AmbientColor";
const char* const KZylSurfaceMaterial::sDiffuse = "DiffuseColor";
const char* const KZylSurfaceMaterial::sSpecular = "SpecularColor";
const char* const KZylSurfaceMaterial::sShininess = "Shininess";
const char* const KZylSurfaceMaterial::sTransparencyFactor = "TransparencyFactor";

namespace {

void AddColor(KZylProperty property, double grey) { property.Set(KZylColor(grey, grey, grey)); }

}  // namespace

KZylSurfaceMaterial::KZylSurfaceMaterial(KZylSdkManager& manager, const char* name) : KZylObject(manager, name) {
  MakeClassProperties(ClassId, [this] { AddMaterialProperties("unknown", 1); });
}

void KZylSurfaceMaterial::AddMaterialProperties(const char* shadingModel, int propertyCount) {
  ReserveProperties(propertyCount);
  AddProperty("ShadingModel", eZylString).Set(KString(shadingModel));
}

KZylSurfaceLambert::KZylSurfaceLambert(KZylSdkManager& manager, const char* name)
    : KZylSurfaceMaterial(manager, name, ForDerivedClass()) {
  MakeClassProperties(ClassId, [this] { AddLambertProperties("lambert", 9); });
}

void KZylSurfaceLambert::AddLambertProperties(const char* shadingModel, int propertyCount) {
  AddMaterialProperties(shadingModel, propertyCount);
  AddColor(AddProperty("EmissiveColor", DTColor3), 0.0);
  AddProperty("EmissiveFactor", DTDouble).Set(1.0);
  AddColor(AddProperty("AmbientColor", DTColor3), 0.2);
  AddProperty("AmbientFactor", DTDouble).Set(1.0);
  AddColor(AddProperty("DiffuseColor", DTColor3), 0.8);
  AddProperty("DiffuseFactor", DTDouble).Set(1.0);
  AddColor(AddProperty("TransparentColor", DTColor3), 0.0);
  AddProperty("TransparencyFactor", DTDouble).Set(0.0);
}

KZylSurfacePhong::KZylSurfacePhong(KZylSdkManager& manager, const char* name)
    : KZylSurfaceLambert(manager, name, ForDerivedClass()) {
  MakeClassProperties(ClassId, [this] {
    AddLambertProperties("phong", 14);
    AddColor(AddProperty("SpecularColor", DTColor3), 0.2);
    AddProperty("SpecularFactor", DTDouble).Set(1.0);
    AddProperty("Shininess", DTDouble).Set(20.0);
    AddColor(AddProperty("ReflectionColor", DTColor3), 0.0);
    AddProperty("ReflectionFactor", DTDouble).Set(1.0);
  });
}

}  // namespace zylsdk
