#include "kit/camera.h"

#include "kit/manager.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylCamera, KZylNodeAttribute)

void KZylCamera::SetAspect(EAspectRatioMode mode, double width, double height) {
  mValues.aspectMode = mode;
  mValues.aspectWidth = width;
  mValues.aspectHeight = height;
}

void KZylCamera::CopyFrom(const KZylObject& source) {
  KZylNodeAttribute::CopyFrom(source);
  if (source.Is(KZylCamera::ClassId)) mValues = static_cast<const KZylCamera&>(source).mValues;
}

}  // namespace zylsdk
