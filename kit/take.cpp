#include "kit/take.h"

#include <algorithm>

#include "kit/geometry.h"

namespace zylsdk {

// ---------------------------------------------------------------- KFCurve

void KFCurve::KeyReserve(int count) {
  const size_t wanted = count > 0 ? static_cast<size_t>(count) : 0;
  if (wanted > mKeys.capacity()) mKeys.reserve(std::max(wanted, 2 * mKeys.capacity()));
}

int KFCurve::KeyAdd(KTime time, int*) {
  if (mKeys.empty() || mKeys.back().time < time) {
    KFCurveKey key;
    key.time = time;
    mKeys.push_back(key);
    return KeyGetCount() - 1;
  }
  auto at = std::lower_bound(mKeys.begin(), mKeys.end(), time,
                             [](const KFCurveKey& k, KTime t) { return k.time < t; });
  if (at != mKeys.end() && at->time == time) return static_cast<int>(at - mKeys.begin());
  KFCurveKey key;
  key.time = time;
  // The position is taken before inserting: the insertion may move the keys.
  const auto index = at - mKeys.begin();
  mKeys.insert(at, key);
  return static_cast<int>(index);
}

void KFCurve::KeyAddMany(std::vector<KFCurveKey> keys) {
  if (keys.empty()) return;
  auto earlier = [](const KFCurveKey& a, const KFCurveKey& b) { return a.time < b.time; };
  if (!std::is_sorted(keys.begin(), keys.end(), earlier)) std::stable_sort(keys.begin(), keys.end(), earlier);
  // Keys in order, all later than the curve's and no two at one time (what a sampler gives) are
  // taken as they are.
  const auto sameTime = [](const KFCurveKey& a, const KFCurveKey& b) { return a.time == b.time; };
  if ((mKeys.empty() || mKeys.back().time < keys.front().time) &&
      std::adjacent_find(keys.begin(), keys.end(), sameTime) == keys.end()) {
    if (mKeys.empty()) {
      mKeys = std::move(keys);
    } else {
      mKeys.insert(mKeys.end(), keys.begin(), keys.end());
    }
    return;
  }
  std::vector<KFCurveKey> merged;
  merged.reserve(mKeys.size() + keys.size());
  auto kept = mKeys.begin();
  for (size_t i = 0; i < keys.size(); ++i) {
    // Of the keys at one time, the last of the list wins.
    if (i + 1 < keys.size() && keys[i + 1].time == keys[i].time) continue;
    while (kept != mKeys.end() && kept->time < keys[i].time) merged.push_back(*kept++);
    if (kept != mKeys.end() && kept->time == keys[i].time) ++kept;
    merged.push_back(keys[i]);
  }
  merged.insert(merged.end(), kept, mKeys.end());
  mKeys.swap(merged);
}

void KFCurve::KeySet(int index, KTime time, float value, int interpolation, int tangentMode, float rightDerivative,
                     float leftDerivative, int weightedMode, float rightWeight, float leftWeight, float rightVelocity,
                     float leftVelocity) {
  KFCurveKey* key = Key(index);
  if (!key) return;
  KFCurveKey updated;
  updated.time = time;
  updated.value = value;
  updated.interpolation = interpolation;
  updated.tangentMode = tangentMode;
  updated.weightedMode = weightedMode;
  updated.leftDerivative = leftDerivative;
  updated.rightDerivative = rightDerivative;
  updated.leftWeight = leftWeight;
  updated.rightWeight = rightWeight;
  updated.leftVelocity = leftVelocity;
  updated.rightVelocity = rightVelocity;
  if (key->time == time) {
    *key = updated;
    return;
  }
  mKeys.erase(mKeys.begin() + index);
  int at = KeyAdd(time);
  mKeys[static_cast<size_t>(at)] = updated;
}

bool KFCurve::KeyRemove(int index) {
  if (!Key(index)) return false;
  mKeys.erase(mKeys.begin() + index);
  return true;
}

const KFCurveKey& KFCurve::KeyGet(int index) const {
  static const KFCurveKey none;
  return (index >= 0 && index < KeyGetCount()) ? mKeys[static_cast<size_t>(index)] : none;
}

KFCurveKey* KFCurve::Key(int index) {
  return (index >= 0 && index < KeyGetCount()) ? &mKeys[static_cast<size_t>(index)] : nullptr;
}

void KFCurve::KeySetValue(int index, float value) {
  if (KFCurveKey* key = Key(index)) key->value = value;
}
void KFCurve::KeySetInterpolation(int index, int interpolation) {
  if (KFCurveKey* key = Key(index)) key->interpolation = interpolation;
}
void KFCurve::KeySetTangentMode(int index, int tangentMode) {
  if (KFCurveKey* key = Key(index)) key->tangentMode = tangentMode;
}
void KFCurve::KeySetLeftDerivative(int index, float derivative) {
  if (KFCurveKey* key = Key(index)) key->leftDerivative = derivative;
}
void KFCurve::KeySetRightDerivative(int index, float derivative) {
  if (KFCurveKey* key = Key(index)) key->rightDerivative = derivative;
}
void KFCurve::KeySetBreak(int index, bool isBreak) {
  if (KFCurveKey* key = Key(index)) key->isBreak = isBreak;
}

// ---------------------------------------------------------------- KZylTakeNode

KFCurve* KZylTakeNode::GetCurve(EChannel channel) {
  if (channel < 0 || channel >= eChannelCount) return nullptr;
  std::unique_ptr<KFCurve>& curve = mCurves[channel];
  if (!curve) curve = std::make_unique<KFCurve>();
  return curve.get();
}

const KFCurve* KZylTakeNode::FindCurve(EChannel channel) const {
  if (channel < 0 || channel >= eChannelCount) return nullptr;
  return mCurves[channel].get();
}

KFCurve* KZylTakeNode::GetShapeChannel(const KZylGeometry* geometry, int index) {
  if (!geometry || index < 0 || index >= geometry->GetShapeCount()) return nullptr;
  std::unique_ptr<KFCurve>& curve = mShapeChannels[{geometry, index}];
  if (!curve) curve = std::make_unique<KFCurve>();
  return curve.get();
}

const KFCurve* KZylTakeNode::FindShapeChannel(const KZylGeometry* geometry, int index) const {
  auto found = mShapeChannels.find({geometry, index});
  return found == mShapeChannels.end() ? nullptr : found->second.get();
}

void KZylTakeNode::ForgetObjects(const std::unordered_set<const KZylObject*>& gone) {
  for (auto it = mShapeChannels.begin(); it != mShapeChannels.end();) {
    if (gone.count(it->first.first))
      it = mShapeChannels.erase(it);
    else
      ++it;
  }
}

// ---------------------------------------------------------------- KZylTakeNodeContainer

bool KZylTakeNodeContainer::CreateTakeNode(const KString& name) {
  if (FindTakeNode(name)) return false;
  if (!mTakeNodes) mTakeNodes = std::make_unique<TakeNodes>();
  mTakeNodes->nodes.push_back(std::make_unique<KZylTakeNode>(name));
  return true;
}

KZylTakeNode* KZylTakeNodeContainer::GetTakeNode(int index) const {
  return (index >= 0 && index < GetTakeNodeCount()) ? mTakeNodes->nodes[static_cast<size_t>(index)].get() : nullptr;
}

KZylTakeNode* KZylTakeNodeContainer::FindTakeNode(const KString& name) const {
  if (!mTakeNodes) return nullptr;
  for (const auto& takeNode : mTakeNodes->nodes)
    if (takeNode->GetName() == name) return takeNode.get();
  return nullptr;
}

bool KZylTakeNodeContainer::SetCurrentTakeNode(const KString& name) {
  KZylTakeNode* takeNode = FindTakeNode(name);
  if (!takeNode) return false;
  mTakeNodes->current = takeNode;
  return true;
}

void KZylTakeNodeContainer::ForgetTakeObjects(const std::unordered_set<const KZylObject*>& gone) {
  if (!mTakeNodes) return;
  for (const auto& takeNode : mTakeNodes->nodes) takeNode->ForgetObjects(gone);
}

}  // namespace zylsdk
