#include "kit/stream_options.h"

#include "kit/manager.h"

namespace zylsdk {

KZYL_IMPLEMENT_CLASS(KZylStreamOptions, KZylObject)
KZYL_IMPLEMENT_CLASS(KZylStreamOptionsColladaReader, KZylStreamOptions)

KZylStreamOptionsColladaReader::KZylStreamOptionsColladaReader(KZylSdkManager& manager, const char* name)
    : KZylStreamOptions(manager, name) {
  AddProperty("START", eZylTime);
  AddProperty("FRAME COUNT", eZylInteger);
  AddProperty("COMPLETE", eZylBool).Set(false);
  AddProperty("MAX SCENE INSTANCES", eZylInteger).Set(kDefaultSceneInstances);
  AddProperty("GZIP RATIO", eZylInteger).Set(50);
  AddProperty("GZIP FLOOR", eZylInteger).Set(64 << 20);
  AddProperty("MAX ATTRIBUTES PER ELEMENT", eZylInteger).Set(kDefaultAttributesPerElement);
  AddProperty("OUTPUT RATIO", eZylInteger).Set(kDefaultOutputRatio);
  AddProperty("OUTPUT FLOOR", eZylInteger).Set(kDefaultOutputFloor);
}

void KZylStreamOptionsColladaReader::SetTimeMode(int timeMode, double customFrameRate) {
  mTimeMode = timeMode;
  mCustomFrameRate = customFrameRate;
}

void KZylStreamOptionsColladaReader::CopyFrom(const KZylObject& source) {
  KZylStreamOptions::CopyFrom(source);
  if (!source.Is(KZylStreamOptionsColladaReader::ClassId)) return;
  const auto& options = static_cast<const KZylStreamOptionsColladaReader&>(source);
  mTimeMode = options.mTimeMode;
  mCustomFrameRate = options.mCustomFrameRate;
}

}  // namespace zylsdk
