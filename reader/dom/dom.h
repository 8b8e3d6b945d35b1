#pragma once
// COLLADA document access: attributes, text and child elements of the reader's document tree
// (reader/dom/element.h). Every helper accepts a null element and then answers "" or null.

#include <string>
#include <vector>

#include "kit/karray.h"
#include "kit/kmath.h"
#include "kit/kstring.h"
#include "reader/dom/element.h"

namespace zylsdk {

// The element's name; "" for null.
const char* DAE_GetName(const DaeElement* element);
// True when `node` is an element named `name`. Inline because nearly every element is asked
// this many times; the first letter settles most answers.
inline bool DAE_IsElement(const DaeElement* node, const char* name) {
  if (!node) return false;
  const char* own = node->Name();
  return own[0] == name[0] && SameName(own, name);
}
// The value of the attribute `name`; "" when it is absent.
KString DAE_GetProperty(const DaeElement* element, const char* name);
// Whether the element has the attribute `name`.
bool DAE_HasProperty(const DaeElement* element, const char* name);
// The same value without a copy: the text lives as long as the document. (`storage` is never
// needed by this tree; callers written for trees that put some values together pass it.)
const char* DAE_PropertyText(const DaeElement* element, const char* name, KString& storage);
// The element's text content (of all its descendants, in document order); "" for null. The
// text of a list element (float_array, p, Name_array...) is held only as its values and is
// not part of any content.
KString DAE_GetContent(const DaeElement* element);
// The element's "url" attribute without its first character (the "#" of a local reference,
// dropped without being looked at).
KString DAE_GetUrl(const DaeElement* element);
// The "offset" attribute of an `input` element as an integer (0 when absent).
int DAE_GetOffset(const DaeElement* element);

// The values of a list element, read as ParseDoubles, strtoints and a split at white space
// read its text: those converted while the document was read, or, for a list that was not
// converted (one inside another list), its text read now into `storage`.
const std::vector<double>& DAE_GetDoubles(const DaeElement* element, std::vector<double>& storage);
const std::vector<int>& DAE_GetInts(const DaeElement* element, std::vector<int>& storage);
const std::vector<KString>& DAE_GetWords(const DaeElement* element, std::vector<KString>& storage);
// A `matrix` or `bind_shape_matrix` as COLLADA writes it (by rows, translation in the fourth
// column): value 4r+c goes to the kit's row c, column r; missing values come from the identity.
KZylXMatrix DAE_GetMatrix(const DaeElement* element);

// The parent element of `element`; null for the root and for null.
DaeElement* parentElement(const DaeElement* element);
// The first element child of `element` (any name), or null; the next element sibling, or null.
// Inline: every walk over children takes these steps.
inline DaeElement* firstChildElement(const DaeElement* element) { return element ? element->FirstChild() : nullptr; }
inline DaeElement* nextSiblingElement(const DaeElement* node) { return node ? node->NextSibling() : nullptr; }
// The first child element named `type`, in document order; null when there is none.
DaeElement* findChildByType(const DaeElement* element, const KString& type);
// Appends every child element named `type` to `out`, in document order.
void findChildrenByType(const DaeElement* element, const KString& type, KArrayTemplate<DaeElement*>& out);
// The first descendant element (document order) whose "id" attribute equals `id`; null when
// there is none. The document's index of ids answers it without a walk.
DaeElement* findChildById(const DaeElement* element, const KString& id);
// The same for an element whose DescendantsEnd() is `descendantsEnd`: that end is found by a
// walk up the tree, which a caller asking many questions of one element makes once.
DaeElement* findChildById(const DaeElement* element, uint32_t descendantsEnd, const KString& id);
// The `technique` child whose "profile" attribute equals `profile`; null when none.
DaeElement* getTechniqueNode(const DaeElement* element, const KString& profile);
// The first `technique` child; null when none.
DaeElement* getTechniqueNode(const DaeElement* element);
// The `technique_common` child; null when none.
DaeElement* getTechniqueCommonNode(const DaeElement* element);

// The text content of an element without copying it when the element has no children (the
// usual case); other content is gathered into a buffer of its own.
class ElementText {
 public:
  explicit ElementText(const DaeElement* element);
  ElementText(const ElementText&) = delete;
  ElementText& operator=(const ElementText&) = delete;
  const char* c_str() const { return mText; }

 private:
  const char* mText;
  std::string mGathered;
};

}  // namespace zylsdk
