#include "reader/xml_document.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>

namespace zylsdk {
namespace {

constexpr int kParseOptions = XML_PARSE_HUGE | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

// The deepest element nesting accepted. libxml2 lifts its own depth limit for huge documents,
// and every open element costs memory, so a file of nothing but start tags would take memory
// in proportion to its size. Real documents stay far below this depth.
constexpr int kMaxDepth = 2048;

// Why the parse was stopped on purpose; kept in the parser context's private pointer.
enum class StopReason { kNone, kEntityDeclaration, kTooDeep };

void StopParse(void* context, StopReason reason) {
  xmlParserCtxtPtr parser = static_cast<xmlParserCtxtPtr>(context);
  *static_cast<StopReason*>(parser->_private) = reason;
  xmlStopParser(parser);
}

// Any entity declaration ends the parse: the document is then refused.
void RefuseEntityDeclaration(void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
  StopParse(context, StopReason::kEntityDeclaration);
}

// Builds the element as libxml2 does, unless it would nest deeper than kMaxDepth.
void StartElementWithinDepth(void* context, const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri,
                             int namespaceCount, const xmlChar** namespaces, int attributeCount, int defaulted,
                             const xmlChar** attributes) {
  if (static_cast<xmlParserCtxtPtr>(context)->nodeNr >= kMaxDepth) {
    StopParse(context, StopReason::kTooDeep);
    return;
  }
  xmlSAX2StartElementNs(context, localName, prefix, uri, namespaceCount, namespaces, attributeCount, defaulted,
                        attributes);
}

KString StopMessage(StopReason reason) {
  if (reason == StopReason::kTooDeep) return KString("elements are nested more than ") + kMaxDepth + " deep";
  return "entity declarations are not accepted";
}

// Parse errors are only recorded in the context (the tool explains them); nothing is printed.
// Without this handler libxml2 prints some of them, such as a file it cannot load, even when
// told not to report errors and warnings. (The error parameter is const in some libxml2
// versions only, hence the template.)
template <class Error>
void IgnoreError(void*, Error) {}

struct ParserContextDeleter {
  void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

}  // namespace

XmlDocumentPtr ParseXmlFile(const KString& path, XmlParseFailure* failure) {
  std::unique_ptr<xmlParserCtxt, ParserContextDeleter> context(xmlNewParserCtxt());
  if (!context) return nullptr;
  StopReason stopped = StopReason::kNone;
  context->_private = &stopped;
  context->sax->entityDecl = RefuseEntityDeclaration;
  context->sax->startElementNs = StartElementWithinDepth;
  context->sax->serror = IgnoreError;
  XmlDocumentPtr document(xmlCtxtReadFile(context.get(), path.Buffer(), nullptr, kParseOptions));
  if (stopped != StopReason::kNone) {
    document.reset();
    if (failure) {
      failure->line = context->input ? context->input->line : 0;
      failure->message = StopMessage(stopped);
    }
    return nullptr;
  }
  if (!document && failure) {
    const xmlError* error = xmlCtxtGetLastError(context.get());
    failure->line = error ? error->line : 0;
    KString message = (error && error->message) ? KString(error->message) : KString("cannot read the file");
    while (message.GetLen() > 0 && message[message.GetLen() - 1] == '\n') message = message.Left(message.GetLen() - 1);
    failure->message = message;
  }
  return document;
}

}  // namespace zylsdk
