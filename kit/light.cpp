#include "kit/light.h"

#include "kit/manager.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylLight, KZylNodeAttribute)

void KZylLight::CopyFrom(const KZylObject& source) {
  KZylNodeAttribute::CopyFrom(source);
  if (source.Is(KZylLight::ClassId)) mValues = static_cast<const KZylLight&>(source).mValues;
}

}  // namespace zylsdk
