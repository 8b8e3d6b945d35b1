#include "reader/animation/element_ids.h"

#include <algorithm>

#include "reader/dom/dom.h"

namespace zylsdk {

AnimationElementIds::AnimationElementIds(const DaeElement* top) {
  if (!top) return;
  // Depth first with an explicit stack; a frame closes the range of its element's descendants
  // when its last child is done.
  struct Frame {
    const DaeElement* element;
    size_t firstDescendant;
    DaeElement* nextChild;
  };
  auto visit = [this](const DaeElement* element) {
    mElements.push_back(const_cast<DaeElement*>(element));
    if (DAE_HasProperty(element, "id"))
      mById[DAE_GetProperty(element, "id")].push_back(mElements.size() - 1);
    return Frame{element, mElements.size(), firstChildElement(element)};
  };
  std::vector<Frame> stack{visit(top)};
  while (!stack.empty()) {
    Frame& frame = stack.back();
    if (!frame.nextChild) {
      if (DAE_IsElement(frame.element, "animation"))
        mScopes[frame.element] = {frame.firstDescendant, mElements.size()};
      stack.pop_back();
      continue;
    }
    DaeElement* child = frame.nextChild;
    frame.nextChild = nextSiblingElement(child);
    stack.push_back(visit(child));
  }
}

DaeElement* AnimationElementIds::Find(const DaeElement* scope, const KString& id) const {
  auto range = mScopes.find(scope);
  // Elements outside this animation are searched the plain way.
  if (range == mScopes.end()) return findChildById(scope, id);
  auto positions = mById.find(id);
  if (positions == mById.end()) return nullptr;
  const std::vector<size_t>& list = positions->second;
  auto first = std::lower_bound(list.begin(), list.end(), range->second.first);
  if (first == list.end() || *first >= range->second.second) return nullptr;
  return mElements[*first];
}

}  // namespace zylsdk
