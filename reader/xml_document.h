#pragma once
// Parsing a document file with libxml2, safely: text nodes of any size are accepted, the
// network is never used, nothing is printed, a document whose DTD declares an entity is
// refused (with text nodes unbounded, entity expansion would be unbounded too), and so is one
// whose elements nest more than 2048 deep.

#include <libxml/tree.h>

#include <memory>

#include "kit/kstring.h"

namespace zylsdk {

struct XmlDocumentDeleter {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using XmlDocumentPtr = std::unique_ptr<xmlDoc, XmlDocumentDeleter>;

// Where and why a parse failed.
struct XmlParseFailure {
  int line = 0;
  KString message;
};

// The parsed document, or null when the file could not be read or is not well-formed XML
// (then `failure`, when given, says where and why).
XmlDocumentPtr ParseXmlFile(const KString& path, XmlParseFailure* failure = nullptr);

}  // namespace zylsdk
