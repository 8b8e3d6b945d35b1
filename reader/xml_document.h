#pragma once
// Parsing a document file with libxml2's streaming parser into the reader's own tree
// (reader/dom/element.h), safely: text of any size is accepted, the network is never used,
// nothing is printed, a document whose DTD declares an entity is refused (with text unbounded,
// entity expansion would be unbounded too), and so is one whose elements nest more than 2048
// deep. The reader reads the file's bytes itself (reader/document_input.h): a gzip file is
// decompressed within a bound, other compressed forms are refused.

#include <string_view>

#include "kit/kstring.h"
#include "reader/document_input.h"
#include "reader/dom/element.h"

namespace zylsdk {

// Where and why a parse failed.
struct XmlParseFailure {
  int line = 0;
  KString message;
  // True when the reader refused the file's bytes before they were XML (a compressed form it
  // does not read, or one that unpacks past its limit); `message` then says which.
  bool refused = false;
};

// The parsed document, or null when the file could not be read or is not well-formed XML
// (then `failure`, when given, says where and why).
DaeDocumentPtr ParseXmlFile(const KString& path, XmlParseFailure* failure = nullptr,
                            const DecompressionLimits& limits = DecompressionLimits());
// The same for a document held in memory.
DaeDocumentPtr ParseXmlText(std::string_view text, XmlParseFailure* failure = nullptr);

}  // namespace zylsdk
