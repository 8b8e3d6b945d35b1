#include "fuzz/document_mutator.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cctype>
#include <cstring>
#include <memory>
#include <vector>

namespace zylfuzz {

namespace {

// Documents beyond this many elements are changed in their first elements only, so that one
// mutation stays cheap whatever the input.
constexpr size_t kMaxElements = 1 << 16;

const char* const kExtremes[] = {"0", "-1", "2147483647", "-2147483648", "4294967296", "1e308", "-0", "nan", "inf",
                                 "99999999999999999999"};
const char* const kNumberAttributes[] = {"count", "stride", "offset", "set", "idx", "depth", "vcount"};
const char* const kReferenceAttributes[] = {"url", "source", "target", "symbol", "material", "texture", "parent"};

struct DocumentFree {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, DocumentFree>;

template <class T>
const T& Pick(const std::vector<T>& items, std::mt19937& random) {
  return items[std::uniform_int_distribution<size_t>(0, items.size() - 1)(random)];
}

template <size_t N>
const char* Pick(const char* const (&items)[N], std::mt19937& random) {
  return items[std::uniform_int_distribution<size_t>(0, N - 1)(random)];
}

bool NameIn(const xmlChar* name, const char* const* names, size_t count) {
  for (size_t i = 0; i < count; ++i)
    if (xmlStrEqual(name, reinterpret_cast<const xmlChar*>(names[i]))) return true;
  return false;
}

// Every element of the document in document order, up to kMaxElements.
std::vector<xmlNode*> Elements(xmlNode* root) {
  std::vector<xmlNode*> elements;
  for (xmlNode* node = root; node && elements.size() < kMaxElements;) {
    if (node->type == XML_ELEMENT_NODE) elements.push_back(node);
    if (node->children && node->type == XML_ELEMENT_NODE) {
      node = node->children;
      continue;
    }
    while (node && node != root && !node->next) node = node->parent;
    if (!node || node == root) break;
    node = node->next;
  }
  return elements;
}

std::string IdOf(const xmlNode* element) {
  xmlChar* id = xmlGetProp(element, reinterpret_cast<const xmlChar*>("id"));
  std::string text = id ? reinterpret_cast<const char*>(id) : "";
  xmlFree(id);
  return text;
}

bool DeleteElement(const std::vector<xmlNode*>& elements, std::mt19937& random) {
  if (elements.size() < 2) return false;
  xmlNode* element = elements[std::uniform_int_distribution<size_t>(1, elements.size() - 1)(random)];
  xmlUnlinkNode(element);
  xmlFreeNode(element);
  return true;
}

bool DuplicateElement(const std::vector<xmlNode*>& elements, std::mt19937& random) {
  if (elements.size() < 2) return false;
  xmlNode* element = elements[std::uniform_int_distribution<size_t>(1, elements.size() - 1)(random)];
  xmlNode* copy = xmlDocCopyNode(element, element->doc, 1);
  return copy && xmlAddNextSibling(element, copy) != nullptr;
}

bool MoveBeforePrevious(const std::vector<xmlNode*>& elements, std::mt19937& random) {
  std::vector<xmlNode*> movable;
  for (xmlNode* element : elements)
    if (xmlPreviousElementSibling(element)) movable.push_back(element);
  if (movable.empty()) return false;
  xmlNode* element = Pick(movable, random);
  return xmlAddPrevSibling(xmlPreviousElementSibling(element), element) != nullptr;
}

// Replaces one number of a text by an extreme.
bool ExtremeInText(xmlNode* text, std::mt19937& random) {
  xmlChar* raw = xmlNodeGetContent(text);
  std::string content = raw ? reinterpret_cast<const char*>(raw) : "";
  xmlFree(raw);
  std::vector<size_t> starts;
  for (size_t i = 0; i < content.size(); ++i)
    if (std::isdigit(static_cast<unsigned char>(content[i])) &&
        (i == 0 || std::isspace(static_cast<unsigned char>(content[i - 1]))))
      starts.push_back(i);
  if (starts.empty()) return false;
  const size_t start = Pick(starts, random);
  size_t end = start;
  while (end < content.size() && !std::isspace(static_cast<unsigned char>(content[end]))) ++end;
  content.replace(start, end - start, Pick(kExtremes, random));
  xmlNodeSetContent(text, reinterpret_cast<const xmlChar*>(content.c_str()));
  return true;
}

bool ExtremeNumber(const std::vector<xmlNode*>& elements, std::mt19937& random) {
  std::vector<xmlAttr*> attributes;
  std::vector<xmlNode*> texts;
  for (xmlNode* element : elements) {
    for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next)
      if (NameIn(attribute->name, kNumberAttributes, std::size(kNumberAttributes))) attributes.push_back(attribute);
    if (element->children && element->children->type == XML_TEXT_NODE && !element->children->next)
      texts.push_back(element->children);
  }
  if (!attributes.empty() && (texts.empty() || random() % 2)) {
    xmlAttr* attribute = Pick(attributes, random);
    return xmlSetProp(attribute->parent, attribute->name, reinterpret_cast<const xmlChar*>(Pick(kExtremes, random))) !=
           nullptr;
  }
  return !texts.empty() && ExtremeInText(Pick(texts, random), random);
}

bool RedirectReference(const std::vector<xmlNode*>& elements, std::mt19937& random) {
  std::vector<xmlAttr*> references;
  std::vector<xmlNode*> identified;
  for (xmlNode* element : elements) {
    for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next)
      if (NameIn(attribute->name, kReferenceAttributes, std::size(kReferenceAttributes))) references.push_back(attribute);
    if (!IdOf(element).empty()) identified.push_back(element);
  }
  if (references.empty()) return false;
  xmlAttr* reference = Pick(references, random);
  xmlNode* holder = reference->parent;
  std::string target = "zylfuzz-missing";
  const int choice = static_cast<int>(random() % 3);
  if (choice == 1 && !identified.empty()) target = IdOf(Pick(identified, random));
  if (choice == 2)
    for (xmlNode* node = holder; node && node->type == XML_ELEMENT_NODE; node = node->parent)
      if (!IdOf(node).empty()) {
        target = IdOf(node);
        break;
      }
  xmlChar* old = xmlGetProp(holder, reference->name);
  const bool hash = old && old[0] == '#';
  xmlFree(old);
  const std::string value = (hash ? "#" : "") + target;
  return xmlSetProp(holder, reference->name, reinterpret_cast<const xmlChar*>(value.c_str())) != nullptr;
}

}  // namespace

bool MutateStructure(std::string& document, std::mt19937& random) {
  Document parsed(xmlReadMemory(document.data(), static_cast<int>(document.size()), "input.dae", nullptr,
                                XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
  if (!parsed) return false;
  const std::vector<xmlNode*> elements = Elements(xmlDocGetRootElement(parsed.get()));
  if (elements.empty()) return false;
  bool changed = false;
  switch (random() % 5) {
    case 0: changed = DeleteElement(elements, random); break;
    case 1: changed = DuplicateElement(elements, random); break;
    case 2: changed = MoveBeforePrevious(elements, random); break;
    case 3: changed = ExtremeNumber(elements, random); break;
    default: changed = RedirectReference(elements, random); break;
  }
  if (!changed) return false;
  xmlChar* text = nullptr;
  int size = 0;
  xmlDocDumpMemory(parsed.get(), &text, &size);
  if (!text) return false;
  const bool completeMode = AsksForCompleteMode(reinterpret_cast<const uint8_t*>(document.data()), document.size());
  document.assign(reinterpret_cast<const char*>(text), static_cast<size_t>(size));
  xmlFree(text);
  // Writing the document back may end it differently: keep the mode it asked for.
  if (AsksForCompleteMode(reinterpret_cast<const uint8_t*>(document.data()), document.size()) != completeMode)
    SwitchReadingMode(document);
  return true;
}

bool AsksForCompleteMode(const uint8_t* data, size_t size) { return size > 0 && (data[size - 1] & 1) != 0; }

void SwitchReadingMode(std::string& document) {
  const bool complete = AsksForCompleteMode(reinterpret_cast<const uint8_t*>(document.data()), document.size());
  const char replacement = complete ? '\n' : '\t';
  if (!document.empty() && document.back() != '\0' && std::strchr(" \t\r\n", document.back()))
    document.back() = replacement;
  else
    document.push_back(replacement);
}

}  // namespace zylfuzz
