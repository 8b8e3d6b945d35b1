#pragma once
// How much a read may make of what one short element can ask for many times over: the keys of
// a sampler shared by many channels, the clusters and bind-pose entries of a skin of many
// joints instanced by many nodes. A document of a few hundred kilobytes could otherwise ask for
// gigabytes. The budget is max(floor, ratio x the document's bytes), counted in bytes of the kit's
// objects; the read options "OUTPUT RATIO" and "OUTPUT FLOOR" set it. What would pass it is
// skipped, with a warning.

#include <algorithm>
#include <cstdint>

#include "kit/deformer.h"
#include "kit/kmath.h"
#include "kit/take.h"

namespace zylsdk {

class OutputBudget {
 public:
  static constexpr int64_t kBytesPerKey = sizeof(KFCurveKey);
  // A cluster, its connections and its entry in the skin's bind pose (a node and a matrix),
  // made twice: in the visual scene and in its copy into the scene being read.
  static constexpr int64_t kBytesPerSkinJoint = 2 * (sizeof(KZylCluster) + sizeof(KZylMatrix) + 6 * sizeof(void*));

  OutputBudget() = default;
  OutputBudget(int64_t documentBytes, int64_t ratio, int64_t floorBytes)
      : mLimit(std::max(floorBytes, documentBytes > INT64_MAX / std::max<int64_t>(1, ratio)
                                        ? INT64_MAX
                                        : documentBytes * std::max<int64_t>(0, ratio))) {}

  // Takes `bytes` from the budget; false, taking nothing, when they would pass it.
  bool Take(int64_t bytes) {
    if (bytes < 0 || bytes > mLimit - mUsed) return false;
    mUsed += bytes;
    return true;
  }
  int64_t Limit() const { return mLimit; }

 private:
  int64_t mLimit = INT64_MAX;
  int64_t mUsed = 0;
};

}  // namespace zylsdk
