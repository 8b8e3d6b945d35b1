#include "reader/dom/dom.h"

#include <cstring>
#include <vector>

#include "reader/dom/numbers.h"

namespace zylsdk {
namespace {

const char* AsText(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

// True when the element has the attribute `name` and its value is `value`.
bool AttributeEquals(const DaeElement* node, const char* name, const KString& value) {
  KString storage;
  if (std::strcmp(DAE_PropertyText(node, name, storage), value.Buffer()) != 0) return false;
  // An absent attribute reads as "": only then is its presence asked again.
  return !value.IsEmpty() || xmlHasProp(node, reinterpret_cast<const xmlChar*>(name));
}

}  // namespace

const char* DAE_GetName(const DaeElement* element) { return (element && element->name) ? AsText(element->name) : ""; }

KString DAE_GetProperty(const DaeElement* element, const char* name) {
  KString storage;
  const char* text = DAE_PropertyText(element, name, storage);
  return text == storage.Buffer() ? storage : KString(text);
}

const char* DAE_PropertyText(const DaeElement* element, const char* name, KString& storage) {
  if (!element || element->type != XML_ELEMENT_NODE) return "";
  const xmlAttr* attribute = xmlHasProp(element, reinterpret_cast<const xmlChar*>(name));
  if (!attribute) return "";
  // A parsed attribute holds its value as one text node: no copy is needed.
  const DaeElement* text = attribute->type == XML_ATTRIBUTE_NODE ? attribute->children : nullptr;
  if (text && !text->next && text->type == XML_TEXT_NODE && text->content) return AsText(text->content);
  // Anything else (entity references, values declared by a DTD) is put together by libxml2.
  xmlChar* value = xmlGetProp(element, reinterpret_cast<const xmlChar*>(name));
  storage = value ? KString(AsText(value)) : KString();
  xmlFree(value);
  return storage.Buffer();
}

KString DAE_GetContent(const DaeElement* element) {
  if (!element) return KString();
  ElementText text(element);
  return KString(text.c_str());
}

KString DAE_GetUrl(const DaeElement* element) { return DAE_GetProperty(element, "url").Mid(1); }

int DAE_GetOffset(const DaeElement* element) {
  KString offset = DAE_GetProperty(element, "offset");
  const char* cursor = offset.Buffer();
  return strtoint(&cursor);
}

bool DAE_HasProperty(const DaeElement* element, const char* name) {
  return element && element->type == XML_ELEMENT_NODE && xmlHasProp(element, reinterpret_cast<const xmlChar*>(name));
}

DaeElement* parentElement(const DaeElement* element) {
  return (element && element->parent && element->parent->type == XML_ELEMENT_NODE) ? element->parent : nullptr;
}

DaeElement* firstChildElement(const DaeElement* element) {
  if (!element) return nullptr;
  for (DaeElement* child = element->children; child; child = child->next)
    if (child->type == XML_ELEMENT_NODE) return child;
  return nullptr;
}

DaeElement* nextSiblingElement(const DaeElement* node) {
  if (!node) return nullptr;
  for (DaeElement* sibling = node->next; sibling; sibling = sibling->next)
    if (sibling->type == XML_ELEMENT_NODE) return sibling;
  return nullptr;
}

DaeElement* findChildByType(const DaeElement* element, const KString& type) {
  for (DaeElement* child = firstChildElement(element); child; child = nextSiblingElement(child))
    if (DAE_IsElement(child, type.Buffer())) return child;
  return nullptr;
}

void findChildrenByType(const DaeElement* element, const KString& type, KArrayTemplate<DaeElement*>& out) {
  for (DaeElement* child = firstChildElement(element); child; child = nextSiblingElement(child))
    if (DAE_IsElement(child, type.Buffer())) out.Add(child);
}

DaeElement* findChildById(const DaeElement* element, const KString& id) {
  if (!element) return nullptr;
  // Depth first, document order, with an explicit stack so that deep documents cannot
  // exhaust the call stack.
  std::vector<DaeElement*> pending;
  for (DaeElement* child = element->last; child; child = child->prev)
    if (child->type == XML_ELEMENT_NODE) pending.push_back(child);
  while (!pending.empty()) {
    DaeElement* node = pending.back();
    pending.pop_back();
    if (AttributeEquals(node, "id", id)) return node;
    for (DaeElement* child = node->last; child; child = child->prev)
      if (child->type == XML_ELEMENT_NODE) pending.push_back(child);
  }
  return nullptr;
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
  const DaeElement* child = element->children;
  bool singleText = child && !child->next && (child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE);
  if (singleText) {
    if (child->content) mText = AsText(child->content);
    return;
  }
  mOwned = xmlNodeGetContent(element);
  if (mOwned) mText = AsText(mOwned);
}

ElementText::~ElementText() {
  if (mOwned) xmlFree(mOwned);
}

}  // namespace zylsdk
