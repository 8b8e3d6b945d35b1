#pragma once
// COLLADA document access: attributes, text and child elements of libxml2 element nodes.
// Every helper accepts a null element and then answers "" or null.

#include <libxml/tree.h>

#include <cstring>

#include "kit/karray.h"
#include "kit/kstring.h"

namespace zylsdk {

// The type of a document element, as the reader's code names it.
using DaeElement = xmlNode;

// The element's name; "" for null.
const char* DAE_GetName(const xmlNode* element);
// True when `node` is an element named `name`. Inline because nearly every element is asked
// this many times; the first letter settles most answers before any string comparison.
inline bool DAE_IsElement(const xmlNode* node, const char* name) {
  if (!node || node->type != XML_ELEMENT_NODE || !node->name) return false;
  const char* own = reinterpret_cast<const char*>(node->name);
  return own[0] == name[0] && std::strcmp(own, name) == 0;
}
// The value of the attribute `name`; "" when it is absent.
KString DAE_GetProperty(const xmlNode* element, const char* name);
// The same value without a copy: the text lives as long as the document, or, in the rare case
// of a value that libxml2 must put together, as long as `storage`, which then holds it.
const char* DAE_PropertyText(const xmlNode* element, const char* name, KString& storage);
// The element's text content (of all its descendants); "" for null.
KString DAE_GetContent(const xmlNode* element);
// The element's "url" attribute without its first character (the "#" of a local reference,
// dropped without being looked at).
KString DAE_GetUrl(const xmlNode* element);
// The "offset" attribute of an `input` element as an integer (0 when absent).
int DAE_GetOffset(const xmlNode* element);

// Whether the element has the attribute `name`.
bool DAE_HasProperty(const xmlNode* element, const char* name);

// The parent element of `element`; null for the root and for null.
xmlNode* parentElement(const xmlNode* element);
// The first element child of `element` (any name), or null; the next element sibling, or null.
xmlNode* firstChildElement(const xmlNode* element);
xmlNode* nextSiblingElement(const xmlNode* node);
// The first child element named `type`, in document order; null when there is none.
xmlNode* findChildByType(const xmlNode* element, const KString& type);
// Appends every child element named `type` to `out`, in document order.
void findChildrenByType(const xmlNode* element, const KString& type, KArrayTemplate<xmlNode*>& out);
// The first descendant element (document order) whose "id" attribute equals `id`; null when
// there is none.
xmlNode* findChildById(const xmlNode* element, const KString& id);
// The `technique` child whose "profile" attribute equals `profile`; null when none.
xmlNode* getTechniqueNode(const xmlNode* element, const KString& profile);
// The first `technique` child; null when none.
xmlNode* getTechniqueNode(const xmlNode* element);
// The `technique_common` child; null when none.
xmlNode* getTechniqueCommonNode(const xmlNode* element);

// The text content of an element without copying it when it is a single text node (the usual
// case for large arrays); other content is gathered into a buffer of its own.
class ElementText {
 public:
  explicit ElementText(const xmlNode* element);
  ~ElementText();
  ElementText(const ElementText&) = delete;
  ElementText& operator=(const ElementText&) = delete;
  const char* c_str() const { return mText; }

 private:
  const char* mText;
  xmlChar* mOwned = nullptr;
};

}  // namespace zylsdk
