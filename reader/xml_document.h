#pragma once
// Parsing a document file with libxml2's streaming parser into the reader's own tree
// (reader/dom/element.h), safely: text of any size is accepted, the network is never used,
// nothing is printed, a document whose DTD declares an entity is refused (with text unbounded,
// entity expansion would be unbounded too), and so is one whose elements nest more than 2048
// deep. The reader reads the file's bytes itself (reader/document_input.h): a gzip file is
// decompressed within a bound, other compressed forms are refused, and so is a document with
// an element of more attributes than its limit.

#include <string_view>

#include "kit/kstring.h"
#include "reader/document_input.h"
#include "reader/dom/element.h"

namespace zylsdk {

// Where and why a parse failed.
struct XmlParseFailure {
  int line = 0;
  KString message;
  // True when the reader refused the file's bytes (a compressed form it does not read, one
  // that unpacks past its limit, an element of too many attributes); `message` says which.
  bool refused = false;
};

// The parsed document, or null when the file could not be read or is not well-formed XML
// (then `failure`, when given, says where and why).
DaeDocumentPtr ParseXmlFile(const KString& path, XmlParseFailure* failure = nullptr,
                            const InputLimits& limits = InputLimits());
// The same for a document held in memory.
DaeDocumentPtr ParseXmlText(std::string_view text, XmlParseFailure* failure = nullptr,
                            const InputLimits& limits = InputLimits());

}  // namespace zylsdk
