#include "reader/xml_document.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

namespace zylsdk {
namespace {

constexpr int kParseOptions = XML_PARSE_HUGE | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

// Any entity declaration ends the parse: the document is then refused.
void RefuseEntityDeclaration(void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
  xmlStopParser(static_cast<xmlParserCtxtPtr>(context));
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
  context->sax->entityDecl = RefuseEntityDeclaration;
  context->sax->serror = IgnoreError;
  XmlDocumentPtr document(xmlCtxtReadFile(context.get(), path.Buffer(), nullptr, kParseOptions));
  if (context->errNo == XML_ERR_USER_STOP) {
    document.reset();
    if (failure) {
      failure->line = context->input ? context->input->line : 0;
      failure->message = "entity declarations are not accepted";
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
