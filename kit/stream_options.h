#pragma once
// Read options: KZylStreamOptions holds options as named properties; the COLLADA reader's
// options add "START" (time), "FRAME COUNT" (integer), "COMPLETE" (bool, false by default:
// true reads everything the kit can represent instead of the reader's traditional subset),
// "MAX SCENE INSTANCES" (integer, 16 by default: how many times the `scene` element may
// instance one visual scene; each instance copies the whole visual scene, so a small document
// could otherwise ask for an unbounded scene), "GZIP RATIO" and "GZIP FLOOR" (integers, 50 and
// 64 MiB by default: a gzip document may unpack to max(floor, ratio x its compressed size) bytes,
// beyond which it is refused), "MAX ATTRIBUTES PER ELEMENT" (integer, 1000 by default: a document
// with an element of more attributes is refused before the parser spends seconds on the element),
// "OUTPUT RATIO" and "OUTPUT FLOOR" (integers, 16 and 64 MiB by default: the keys of animation
// channels and the clusters and bind poses of skin instances may take max(floor, ratio x the
// document's size) bytes; channels and skins beyond are skipped with a warning) and a time mode
// with a frame rate.

#include "kit/object.h"

namespace zylsdk {

class KZylStreamOptions : public KZylObject {
  KZYL_DECLARE_CLASS(KZylStreamOptions)
 public:
  // The option's property; invalid when there is no option of that name.
  KZylProperty GetOption(const KString& name) const { return FindProperty(name); }

 protected:
  using KZylObject::KZylObject;
};

class KZylStreamOptionsColladaReader : public KZylStreamOptions {
  KZYL_DECLARE_CLASS(KZylStreamOptionsColladaReader)
 public:
  static constexpr int kDefaultSceneInstances = 16;
  static constexpr int kDefaultAttributesPerElement = 1000;
  static constexpr int kDefaultOutputRatio = 16;
  static constexpr int kDefaultOutputFloor = 64 << 20;

  // Time modes: 0 is the default (custom) mode, whose rate is the custom frame rate.
  void SetTimeMode(int timeMode, double customFrameRate);
  int GetTimeMode() const { return mTimeMode; }
  double GetCustomFrameRate() const { return mCustomFrameRate; }

 protected:
  KZylStreamOptionsColladaReader(KZylSdkManager& manager, const char* name);
  void CopyFrom(const KZylObject& source) override;

 private:
  int mTimeMode = 0;
  double mCustomFrameRate = 0.0;
};

}  // namespace zylsdk
