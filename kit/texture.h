#pragma once
// KZylTexture: an image file used by materials, with how it wraps and blends.
//
// Defaults: no file name, wrap repeat in U and V, blend normal, material use 0.

#include "kit/object.h"

namespace zylsdk {

class KZylTexture : public KZylObject {
  KZYL_DECLARE_CLASS(KZylTexture)
 public:
  enum EWrapMode { eRepeat = 0, eClamp = 1 };
  enum EBlendMode { eNormal = 0, eAdditive = 1 };

  const KString& GetFileName() const { return mValues.fileName; }
  void SetFileName(const KString& fileName) { mValues.fileName = fileName; }
  const KString& GetRelativeFileName() const { return mValues.relativeFileName; }
  void SetRelativeFileName(const KString& fileName) { mValues.relativeFileName = fileName; }
  void SetWrapMode(EWrapMode u, EWrapMode v) { mValues.wrapU = u; mValues.wrapV = v; }
  EWrapMode GetWrapModeU() const { return mValues.wrapU; }
  EWrapMode GetWrapModeV() const { return mValues.wrapV; }
  EBlendMode GetBlendMode() const { return mValues.blendMode; }
  void SetBlendMode(EBlendMode mode) { mValues.blendMode = mode; }
  int GetMaterialUse() const { return mValues.materialUse; }
  void SetMaterialUse(int use) { mValues.materialUse = use; }

 protected:
  using KZylObject::KZylObject;
  void CopyFrom(const KZylObject& source) override;

 private:
  struct Values {
    KString fileName;
    KString relativeFileName;
    EWrapMode wrapU = eRepeat;
    EWrapMode wrapV = eRepeat;
    EBlendMode blendMode = eNormal;
    int materialUse = 0;
  };
  Values mValues;
};

}  // namespace zylsdk
