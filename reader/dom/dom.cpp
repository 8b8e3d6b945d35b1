#include "reader/dom/dom.h"

#include <algorithm>
#include <string_view>

#include "reader/dom/numbers.h"

namespace zylsdk {
namespace {

// Appends the text of `element` and its descendants in document order: each child's text goes
// where the child stands in its parent's own text. An explicit stack keeps deep trees off the
// call stack.
void AppendContent(const DaeElement* element, std::string& out) {
  struct Frame {
    const DaeElement* element;
    const DaeElement* nextChild;
    size_t textDone;
  };
  std::vector<Frame> stack{{element, element->FirstChild(), 0}};
  while (!stack.empty()) {
    Frame& frame = stack.back();
    const std::string_view text = frame.element->OwnText();
    if (!frame.nextChild) {
      out.append(text.substr(frame.textDone));
      stack.pop_back();
      continue;
    }
    const DaeElement* child = frame.nextChild;
    const size_t upTo = std::clamp<size_t>(child->PositionInParentText(), frame.textDone, text.size());
    out.append(text.substr(frame.textDone, upTo - frame.textDone));
    frame.textDone = upTo;
    frame.nextChild = child->NextSibling();
    stack.push_back({child, child->FirstChild(), 0});
  }
}

// The converted values of `element` when it is a list of `kind`; null otherwise.
const StreamedValues* ValuesOf(const DaeElement* element, ValueKind kind) {
  const StreamedValues* values = element ? element->Values() : nullptr;
  return values && values->kind == kind ? values : nullptr;
}

}  // namespace

const char* DAE_GetName(const DaeElement* element) { return element ? element->Name() : ""; }

KString DAE_GetProperty(const DaeElement* element, const char* name) {
  KString storage;
  return KString(DAE_PropertyText(element, name, storage));
}

bool DAE_HasProperty(const DaeElement* element, const char* name) {
  return element && element->FindAttribute(name);
}

const char* DAE_PropertyText(const DaeElement* element, const char* name, KString&) {
  const char* value = element ? element->FindAttribute(name) : nullptr;
  return value ? value : "";
}

KString DAE_GetContent(const DaeElement* element) {
  if (!element) return KString();
  ElementText text(element);
  return KString(text.c_str());
}

KString DAE_GetUrl(const DaeElement* element) { return DAE_GetProperty(element, "url").Mid(1); }

int DAE_GetOffset(const DaeElement* element) {
  KString storage;
  const char* cursor = DAE_PropertyText(element, "offset", storage);
  return strtoint(&cursor);
}

const std::vector<double>& DAE_GetDoubles(const DaeElement* element, std::vector<double>& storage) {
  if (const StreamedValues* values = ValuesOf(element, ValueKind::kDoubles)) return values->doubles;
  ElementText text(element);
  AppendDoubles(text.c_str(), text.c_str() + std::strlen(text.c_str()), storage);
  return storage;
}

const std::vector<int>& DAE_GetInts(const DaeElement* element, std::vector<int>& storage) {
  if (const StreamedValues* values = ValuesOf(element, ValueKind::kInts)) return values->ints;
  ElementText text(element);
  AppendInts(text.c_str(), text.c_str() + std::strlen(text.c_str()), storage);
  return storage;
}

const std::vector<KString>& DAE_GetWords(const DaeElement* element, std::vector<KString>& storage) {
  if (const StreamedValues* values = ValuesOf(element, ValueKind::kWords)) return values->words;
  ElementText text(element);
  AppendWords(text.c_str(), text.c_str() + std::strlen(text.c_str()), storage);
  return storage;
}

KZylXMatrix DAE_GetMatrix(const DaeElement* element) {
  std::vector<double> storage;
  const std::vector<double>& values = DAE_GetDoubles(element, storage);
  KZylXMatrix matrix;
  for (size_t i = 0; i < std::min<size_t>(16, values.size()); ++i) matrix.mData[i % 4][i / 4] = values[i];
  return matrix;
}

DaeElement* parentElement(const DaeElement* element) { return element ? element->Parent() : nullptr; }

DaeElement* findChildByType(const DaeElement* element, const KString& type) {
  for (DaeElement* child = firstChildElement(element); child; child = nextSiblingElement(child))
    if (DAE_IsElement(child, type.Buffer())) return child;
  return nullptr;
}

void findChildrenByType(const DaeElement* element, const KString& type, KArrayTemplate<DaeElement*>& out) {
  for (DaeElement* child = firstChildElement(element); child; child = nextSiblingElement(child))
    if (DAE_IsElement(child, type.Buffer())) out.Add(child);
}

namespace {

// The first element of the id after `element` in document order, or null.
DaeElement* FirstWithIdAfter(const DaeElement* element, const KString& id) {
  const DaeElementSpan withId = element->Document().ElementsWithId(id.Std());
  auto after = std::upper_bound(withId.begin(), withId.end(), element->Order(),
                                [](uint32_t order, const DaeElement* candidate) { return order < candidate->Order(); });
  return after != withId.end() ? *after : nullptr;
}

}  // namespace

// A descendant is an element of the id that comes before the end of `element`'s descendants.
DaeElement* findChildById(const DaeElement* element, const KString& id) {
  DaeElement* after = element ? FirstWithIdAfter(element, id) : nullptr;
  return after && after->Order() < element->DescendantsEnd() ? after : nullptr;
}

DaeElement* findChildById(const DaeElement* element, uint32_t descendantsEnd, const KString& id) {
  DaeElement* after = element ? FirstWithIdAfter(element, id) : nullptr;
  return after && after->Order() < descendantsEnd ? after : nullptr;
}

DaeElement* getTechniqueNode(const DaeElement* element, const KString& profile) {
  for (DaeElement* child = firstChildElement(element); child; child = nextSiblingElement(child))
    if (DAE_IsElement(child, "technique") && DAE_GetProperty(child, "profile") == profile) return child;
  return nullptr;
}

DaeElement* getTechniqueNode(const DaeElement* element) { return findChildByType(element, "technique"); }

DaeElement* getTechniqueCommonNode(const DaeElement* element) { return findChildByType(element, "technique_common"); }

ElementText::ElementText(const DaeElement* element) : mText("") {
  if (!element) return;
  if (!element->FirstChild()) {
    mText = element->OwnText().data();
    return;
  }
  AppendContent(element, mGathered);
  mText = mGathered.c_str();
}

}  // namespace zylsdk
