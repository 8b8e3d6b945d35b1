// The complete reading's channels on `matrix` elements: their keys are kept while the
// animations are read, then baked into the node's translation, rotation and scaling curves,
// one key per key time of the channels, so that the node's matrix equals the document's there.

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "reader/animation/animation_steps.h"

namespace zylsdk {

// The keys of one channel on a matrix element: `width` values per key (16 for the whole matrix,
// listed by rows; 1 for one entry), sorted by time, one key per time.
struct MatrixKeys {
  int width = 1;
  std::vector<double> times;
  std::vector<double> values;
};

struct MatrixAnimations {
  // The channels on one matrix element of one node, by entry (-1 for the whole matrix).
  struct Animated {
    MatrixChannelTarget target;
    std::map<int, MatrixKeys> channels;
  };
  std::vector<Animated> animated;  // in the order of their first channel
  std::map<std::pair<const KZylTakeNode*, const MatrixTarget*>, size_t> positions;
};

namespace {

// "(row)(column)" at the end of `path`, each 0 to 3: the entry 4 * row + column, and `path`
// without it; -1 when the path does not end so.
int TrailingEntry(const KString& path, KString& element) {
  const int length = path.GetLen();
  if (length < 6) return -1;
  const char* tail = path.Buffer() + length - 6;
  auto index = [](char digit) { return digit >= '0' && digit <= '3' ? digit - '0' : -1; };
  const int row = index(tail[1]), column = index(tail[4]);
  if (tail[0] != '(' || tail[2] != ')' || tail[3] != '(' || tail[5] != ')' || row < 0 || column < 0) return -1;
  element = path.Left(length - 6);
  return 4 * row + column;
}

// The keys of a channel, sorted by time; of keys at one time the last one listed stays, as a
// curve keeps it. Keys without a finite time are left out.
MatrixKeys ReadKeys(const SamplerArrays& arrays, int width) {
  std::vector<std::pair<double, int>> order;
  for (int key = 0; key < arrays.times.GetCount(); ++key)
    if (std::isfinite(arrays.times[key])) order.emplace_back(arrays.times[key], key);
  std::stable_sort(order.begin(), order.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  MatrixKeys keys;
  keys.width = width;
  for (size_t i = 0; i < order.size(); ++i) {
    if (i + 1 < order.size() && order[i + 1].first == order[i].first) continue;
    keys.times.push_back(order[i].first);
    for (int k = 0; k < width; ++k) {
      const int64_t at = static_cast<int64_t>(order[i].second) * width + k;
      keys.values.push_back(at < arrays.values.GetCount() ? arrays.values[static_cast<int>(at)] : 0.0);
    }
  }
  return keys;
}

// Reads a channel's values at increasing times, linearly between its keys and held beyond its
// first and last keys.
class KeySampler {
 public:
  explicit KeySampler(const MatrixKeys& keys) : mKeys(keys) {}
  // Value `k` at `time`; times must not decrease from one call to the next.
  double At(double time, int k) {
    const std::vector<double>& times = mKeys.times;
    while (mNext < times.size() && times[mNext] <= time) ++mNext;
    const int width = mKeys.width;
    if (mNext == 0) return mKeys.values[static_cast<size_t>(k)];
    const size_t previous = mNext - 1;
    const double before = mKeys.values[previous * width + k];
    if (mNext == times.size() || times[previous] == time) return before;
    const double after = mKeys.values[mNext * width + k];
    const double share = (time - times[previous]) / (times[mNext] - times[previous]);
    // Keys too far apart for their span to be a finite number hold the earlier value.
    return std::isfinite(share) ? before + (after - before) * share : before;
  }

 private:
  const MatrixKeys& mKeys;
  size_t mNext = 0;
};

// The axis (0, 1, 2) that a rotation order turns about second.
int MiddleAxis(ERotationOrder order) {
  switch (order) {
    case eEulerXZY:
    case eEulerYZX:
      return 2;
    case eEulerYXZ:
    case eEulerZXY:
      return 0;
    default:
      return 1;
  }
}

double NearestTurn(double angle, double reference) {
  return angle + 360.0 * std::round((reference - angle) / 360.0);
}

// Of the angles equivalent to `angles` (whole turns added, or the other solution of the order:
// first and last axes half a turn on, the middle one mirrored), the closest to `previous`, so
// that interpolating from one key to the next does not spin.
KZylVector4 ContinuousAngles(const KZylVector4& angles, const KZylVector4& previous, ERotationOrder order) {
  const int middle = MiddleAxis(order);
  KZylVector4 other = angles;
  for (int axis = 0; axis < 3; ++axis) other[axis] = axis == middle ? 180.0 - angles[axis] : angles[axis] + 180.0;
  auto unwrap = [&previous](KZylVector4 candidate, double& distance) {
    distance = 0.0;
    for (int axis = 0; axis < 3; ++axis) {
      candidate[axis] = NearestTurn(candidate[axis], previous[axis]);
      distance += std::fabs(candidate[axis] - previous[axis]);
    }
    return candidate;
  };
  double distance = 0.0, otherDistance = 0.0;
  const KZylVector4 first = unwrap(angles, distance);
  const KZylVector4 second = unwrap(other, otherDistance);
  return otherDistance < distance ? second : first;
}

// The element's matrix at `time`: its document value, then the whole-matrix channel, then the
// channels of single entries. COLLADA's entry (row, column) is the kit's (column, row).
KZylXMatrix ElementAt(const MatrixTarget& target, std::vector<std::pair<int, KeySampler>>& samplers, double time) {
  KZylXMatrix element = target.element;
  for (auto& [entry, sampler] : samplers) {
    if (entry >= 0) {
      element.Set(entry % 4, entry / 4, sampler.At(time, 0));
      continue;
    }
    for (int k = 0; k < 16; ++k) element.Set(k % 4, k / 4, sampler.At(time, k));
  }
  return element;
}

// The union of the channels' key times, increasing.
std::vector<double> KeyTimes(const std::map<int, MatrixKeys>& channels) {
  std::vector<double> times;
  for (const auto& channel : channels) {
    const std::vector<double>& own = channel.second.times;
    const size_t middle = times.size();
    times.insert(times.end(), own.begin(), own.end());
    std::inplace_merge(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(middle), times.end());
  }
  times.erase(std::unique(times.begin(), times.end()), times.end());
  return times;
}

void Bake(const MatrixAnimations::Animated& animated) {
  const MatrixChannelTarget& target = animated.target;
  const ERotationOrder order = target.node->GetRotationOrder(eSourcePivot);
  std::vector<std::pair<int, KeySampler>> samplers;
  for (const auto& [entry, keys] : animated.channels)
    if (!keys.times.empty()) samplers.emplace_back(entry, KeySampler(keys));
  const std::vector<double> times = KeyTimes(animated.channels);
  // Translation X, Y, Z, rotation X, Y, Z, scaling X, Y, Z, as the take's channels are listed.
  std::vector<KFCurveKey> keys[9];
  KZylVector4 previousAngles = target.node->GetDefaultR();
  for (double time : times) {
    const KZylXMatrix local = target.target->listedAfter * ElementAt(*target.target, samplers, time) *
                              target.target->listedBefore;
    const KZylVector4 angles = ContinuousAngles(EulerAngles(local, order), previousAngles, order);
    previousAngles = angles;
    const KZylVector4 parts[3] = {local.GetT(), angles, local.GetS()};
    for (int curve = 0; curve < 9; ++curve) {
      KFCurveKey key;
      key.time.SetSecondDouble(time);
      key.value = ToFloat(parts[curve / 3][curve % 3]);
      keys[curve].push_back(key);
    }
  }
  for (int curve = 0; curve < 9; ++curve) {
    const auto channel = static_cast<KZylTakeNode::EChannel>(KZylTakeNode::eTranslationX + curve);
    target.take->GetCurve(channel)->KeyAddMany(std::move(keys[curve]));
  }
}

}  // namespace

bool ResolveMatrixTarget(AnimationContext& context, KZylNode& node, KZylTakeNode& take, const KString& path,
                         const KString& member, ChannelCurves& curves) {
  if (!member.IsEmpty()) return false;
  KString element = path;
  const int entry = TrailingEntry(path, element);
  const MatrixTarget* target = context.state.matrixTargets.Lookup(entry < 0 ? path : element);
  if (!target) return false;
  curves.matrix = MatrixChannelTarget{&node, &take, target, entry};
  return true;
}

std::shared_ptr<MatrixAnimations> NewMatrixAnimations() { return std::make_shared<MatrixAnimations>(); }

void RecordMatrixChannel(AnimationContext& context, const SamplerArrays& arrays, const MatrixChannelTarget& target) {
  const int width = target.entry < 0 ? 16 : 1;
  // A matrix key has one interpolation; its tangents are not baked.
  CheckSamplerSizes(context, arrays, width, 1);
  MatrixAnimations* animations = context.matrixAnimations;
  if (!animations) return;
  // The channel's keys are held until they are baked into nine curves of keys.
  const int64_t bytes = static_cast<int64_t>(arrays.times.GetCount()) *
                        (9 * OutputBudget::kBytesPerKey + (width + 1) * static_cast<int64_t>(sizeof(double)));
  if (!context.reader.SpendOutput(bytes, "animation channels")) return;
  auto [position, isNew] = animations->positions.try_emplace({target.take, target.target}, animations->animated.size());
  if (isNew) animations->animated.push_back(MatrixAnimations::Animated{target, {}});
  MatrixKeys keys = ReadKeys(arrays, width);
  for (double time : keys.times) context.span.Widen(time);
  animations->animated[position->second].channels[target.entry] = std::move(keys);
}

void KZylReaderCollada::BakeMatrixAnimations() {
  if (!mState->matrixAnimations) return;
  // Each element's keys go once its curves are made, so that keys and curves are not all held
  // at once.
  for (MatrixAnimations::Animated& animated : mState->matrixAnimations->animated) {
    Bake(animated);
    std::map<int, MatrixKeys>().swap(animated.channels);
  }
  mState->matrixAnimations.reset();
}

}  // namespace zylsdk
