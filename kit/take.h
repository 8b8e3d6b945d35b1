#pragma once
// Animation: function curves (KFCurve), the take nodes that hold a node's curves for one take,
// and the container of a node's take nodes.

#include <map>
#include <memory>
#include <unordered_set>
#include <utility>
#include <vector>

#include "kit/kstring.h"
#include "kit/ktime.h"

namespace zylsdk {

class KZylGeometry;
class KZylObject;

struct KFCurveKey {
  KTime time;
  float value = 0.0f;
  int interpolation = 4;      // KFCurve::eInterpolationLinear
  int tangentMode = 0x100;    // KFCurve::eTangentAuto
  int weightedMode = 0;
  float leftDerivative = 0.0f;
  float rightDerivative = 0.0f;
  float leftWeight = 0.33333334f;
  float rightWeight = 0.33333334f;
  float leftVelocity = 0.0f;
  float rightVelocity = 0.0f;
  bool isBreak = false;
};

// A function curve: keys sorted by time, values in single precision. Every key operation
// accepts any index; outside the keys, setters do nothing and getters give defaults.
class KFCurve {
 public:
  enum EInterpolation { eInterpolationConstant = 2, eInterpolationLinear = 4, eInterpolationCubic = 8 };
  enum ETangentMode { eTangentAuto = 0x100, eTangentUser = 0x400 };

  // Bracket a series of key changes. Keys stay sorted at all times, so these only exist for
  // callers written against bracketed editing.
  void KeyModifyBegin() {}
  void KeyModifyEnd() {}

  int KeyGetCount() const { return static_cast<int>(mKeys.size()); }
  // Makes room for `count` keys in all, so that adding up to that many moves no key. Room
  // grows at least twofold, so that many small reservations stay cheap.
  void KeyReserve(int count);
  // Adds a key at `time` (value 0) and returns its index; at a time that already has a key,
  // returns that key's index. A time after the last key appends without moving any key.
  int KeyAdd(KTime time, int* lastIndex = nullptr);
  // Adds whole keys, as KeyAdd and then KeySet of every field would, one after the other: a key
  // replaces the curve's key at its time, and a later key of the list replaces an earlier one
  // of the same time. The list is sorted once, so that keys in any order cost n log n.
  void KeyAddMany(std::vector<KFCurveKey> keys);
  // Sets every field of a key; a new time moves the key to keep the curve sorted (a key that
  // already stands at that time is replaced).
  void KeySet(int index, KTime time, float value, int interpolation = eInterpolationLinear,
              int tangentMode = eTangentAuto, float rightDerivative = 0.0f, float leftDerivative = 0.0f,
              int weightedMode = 0, float rightWeight = 0.33333334f, float leftWeight = 0.33333334f,
              float rightVelocity = 0.0f, float leftVelocity = 0.0f);
  bool KeyRemove(int index);
  void KeyClear() { mKeys.clear(); }

  const KFCurveKey& KeyGet(int index) const;
  KTime KeyGetTime(int index) const { return KeyGet(index).time; }
  float KeyGetValue(int index) const { return KeyGet(index).value; }
  void KeySetValue(int index, float value);
  int KeyGetInterpolation(int index) const { return KeyGet(index).interpolation; }
  void KeySetInterpolation(int index, int interpolation);
  int KeyGetTangentMode(int index) const { return KeyGet(index).tangentMode; }
  void KeySetTangentMode(int index, int tangentMode);
  float KeyGetLeftDerivative(int index) const { return KeyGet(index).leftDerivative; }
  void KeySetLeftDerivative(int index, float derivative);
  float KeyGetRightDerivative(int index) const { return KeyGet(index).rightDerivative; }
  void KeySetRightDerivative(int index, float derivative);
  float KeyGetLeftTangeantWeight(int index) const { return KeyGet(index).leftWeight; }
  float KeyGetRightTangeantWeight(int index) const { return KeyGet(index).rightWeight; }
  bool KeyGetBreak(int index) const { return KeyGet(index).isBreak; }
  void KeySetBreak(int index, bool isBreak);

 private:
  KFCurveKey* Key(int index);
  std::vector<KFCurveKey> mKeys;
};

// The curves of one node in one take, each made on first request.
class KZylTakeNode {
 public:
  enum EChannel {
    eTranslationX, eTranslationY, eTranslationZ,
    eRotationX, eRotationY, eRotationZ,
    eScaleX, eScaleY, eScaleZ,
    eColorR, eColorG, eColorB,
    eLightIntensity, eLightConeAngle, eCameraFieldOfView,
    eChannelCount
  };

  explicit KZylTakeNode(const KString& name) : mName(name) {}
  const KString& GetName() const { return mName; }

  // The channel's curve, made when it does not exist yet.
  KFCurve* GetCurve(EChannel channel);
  // The channel's curve when it exists, without making it.
  const KFCurve* FindCurve(EChannel channel) const;

  KFCurve* GetTranslationX() { return GetCurve(eTranslationX); }
  KFCurve* GetTranslationY() { return GetCurve(eTranslationY); }
  KFCurve* GetTranslationZ() { return GetCurve(eTranslationZ); }
  KFCurve* GetEulerRotationX() { return GetCurve(eRotationX); }
  KFCurve* GetEulerRotationY() { return GetCurve(eRotationY); }
  KFCurve* GetEulerRotationZ() { return GetCurve(eRotationZ); }
  KFCurve* GetScaleX() { return GetCurve(eScaleX); }
  KFCurve* GetScaleY() { return GetCurve(eScaleY); }
  KFCurve* GetScaleZ() { return GetCurve(eScaleZ); }
  KFCurve* GetColorR() { return GetCurve(eColorR); }
  KFCurve* GetColorG() { return GetCurve(eColorG); }
  KFCurve* GetColorB() { return GetCurve(eColorB); }
  KFCurve* GetLightIntensity() { return GetCurve(eLightIntensity); }
  KFCurve* GetLightConeAngle() { return GetCurve(eLightConeAngle); }
  KFCurve* GetCameraFieldOfView() { return GetCurve(eCameraFieldOfView); }

  // The weight curve of shape `index` of `geometry`; null when the geometry is null or has no
  // shape of that index.
  KFCurve* GetShapeChannel(const KZylGeometry* geometry, int index);
  const KFCurve* FindShapeChannel(const KZylGeometry* geometry, int index) const;

  // Drops the shape channels of destroyed geometries.
  void ForgetObjects(const std::unordered_set<const KZylObject*>& gone);

 private:
  KString mName;
  std::unique_ptr<KFCurve> mCurves[eChannelCount];
  std::map<std::pair<const KZylGeometry*, int>, std::unique_ptr<KFCurve>> mShapeChannels;
};

// The take nodes of a node, by take name, with the current one.
class KZylTakeNodeContainer {
 public:
  // Adds a take node; false when one of that name exists.
  bool CreateTakeNode(const KString& name);
  int GetTakeNodeCount() const { return mTakeNodes ? static_cast<int>(mTakeNodes->nodes.size()) : 0; }
  KZylTakeNode* GetTakeNode(int index) const;
  KZylTakeNode* FindTakeNode(const KString& name) const;
  // Makes the named take node current; false when there is none of that name.
  bool SetCurrentTakeNode(const KString& name);
  // The current take node; null when none was made current.
  KZylTakeNode* GetCurrentTakeNode() const { return mTakeNodes ? mTakeNodes->current : nullptr; }

 protected:
  void ForgetTakeObjects(const std::unordered_set<const KZylObject*>& gone);

 private:
  // Most nodes are not animated: the list is made with their first take node.
  struct TakeNodes {
    std::vector<std::unique_ptr<KZylTakeNode>> nodes;
    KZylTakeNode* current = nullptr;
  };
  std::unique_ptr<TakeNodes> mTakeNodes;
};

}  // namespace zylsdk
