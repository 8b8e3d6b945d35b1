#include "kit/texture.h"

#include "kit/manager.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylTexture, KZylObject)

void KZylTexture::CopyFrom(const KZylObject& source) {
  KZylObject::CopyFrom(source);
  if (source.Is(KZylTexture::ClassId)) mValues = static_cast<const KZylTexture&>(source).mValues;
}

}  // namespace zylsdk
