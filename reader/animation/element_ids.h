#pragma once
// The elements of one top-level `animation` by id, so that a sampler or a source is found
// without a walk of the animation per channel (an animation may hold thousands of channels).

#include <unordered_map>
#include <utility>
#include <vector>

#include "kit/kstring.h"
#include "reader/dom/dom.h"

namespace zylsdk {

class AnimationElementIds {
 public:
  // Indexes every element below `top`, `top` included, in document order.
  explicit AnimationElementIds(const DaeElement* top);

  // The first element in document order below `scope` (not `scope` itself) whose "id" is
  // `id`; null when there is none. The same answer as findChildById(scope, id).
  DaeElement* Find(const DaeElement* scope, const KString& id) const;

 private:
  std::vector<DaeElement*> mElements;  // document order
  // For each `animation` element: the positions of its descendants, [first, end).
  std::unordered_map<const DaeElement*, std::pair<size_t, size_t>> mScopes;
  // Positions of the elements of each id, increasing.
  std::unordered_map<KString, std::vector<size_t>> mById;
};

}  // namespace zylsdk
