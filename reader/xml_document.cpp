#include "reader/xml_document.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "reader/dom/attribute_counter.h"
#include "reader/dom/tree_builder.h"

namespace zylsdk {
namespace {

constexpr int kParseOptions = XML_PARSE_HUGE | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

// The deepest element nesting accepted. libxml2 lifts its own depth limit for huge documents,
// and every open element costs memory, so a file of nothing but start tags would take memory
// in proportion to its size. Real documents stay far below this depth.
constexpr size_t kMaxDepth = 2048;

// Why the parse was stopped on purpose.
enum class StopReason { kNone, kEntityDeclaration, kTooDeep };

const char* AsText(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

// The document's names for the names the parser hands over. libxml2 keeps each name once in
// its dictionary for the whole parse, so the pointer it gives stands for the name: a small
// table remembers the document's name for the pointers seen last, and only a pointer seen for
// the first time (or pushed out of its slot) is looked up by its characters.
class ParserNames {
 public:
  // A name whose prefix is bound to a namespace is known by its local part; one whose prefix
  // is not bound keeps "prefix:name".
  const DaeName* Find(const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri, xmlDictPtr dictionary,
                      DaeTreeBuilder& builder) {
    if (prefix && !uri) {
      mQualified.assign(AsText(prefix)).append(":").append(AsText(localName));
      return builder.Intern(mQualified);
    }
    Entry& entry = mEntries[(reinterpret_cast<uintptr_t>(localName) * 0x9E3779B97F4A7C15u) >> 56];
    if (entry.key == localName) return entry.name;
    const DaeName* name = builder.Intern(AsText(localName));
    // Only a name the dictionary owns keeps its characters for the whole parse.
    if (dictionary && xmlDictOwns(dictionary, localName) == 1) entry = {localName, name};
    return name;
  }

 private:
  struct Entry {
    const xmlChar* key = nullptr;
    const DaeName* name = nullptr;
  };
  std::array<Entry, 256> mEntries{};
  std::string mQualified;
};

// What the parser's callbacks share; kept in the parser context's private pointer.
struct ParseState {
  explicit ParseState(size_t inputSize) : builder(inputSize) {}
  DaeTreeBuilder builder;
  StopReason stopped = StopReason::kNone;
  ParserNames names;
  // Scratch for one start tag: decoded values.
  std::vector<std::string> values;
  DaeTreeBuilder::Attributes attributes;
};

ParseState& StateOf(void* context) {
  return *static_cast<ParseState*>(static_cast<xmlParserCtxtPtr>(context)->_private);
}

void StopParse(void* context, StopReason reason) {
  StateOf(context).stopped = reason;
  xmlStopParser(static_cast<xmlParserCtxtPtr>(context));
}

// Any entity declaration ends the parse: the document is then refused.
void RefuseEntityDeclaration(void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
  StopParse(context, StopReason::kEntityDeclaration);
}

// The parser hands over a value holding an ampersand (it came from "&amp;" or "&#38;") with
// that ampersand written "&#38;"; this gives the value as the document means it.
std::string_view DecodedValue(const char* begin, const char* end, std::string& storage) {
  std::string_view value(begin, static_cast<size_t>(end - begin));
  if (value.find('&') == std::string_view::npos) return value;
  storage.clear();
  for (size_t i = 0; i < value.size(); ++i) {
    if (value.compare(i, 5, "&#38;") == 0) {
      storage += '&';
      i += 4;
    } else {
      storage += value[i];
    }
  }
  return storage;
}

void StartElement(void* context, const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri, int,
                  const xmlChar**, int attributeCount, int defaulted, const xmlChar** attributes) {
  ParseState& state = StateOf(context);
  if (state.builder.Depth() >= kMaxDepth) {
    StopParse(context, StopReason::kTooDeep);
    return;
  }
  xmlParserCtxtPtr parser = static_cast<xmlParserCtxtPtr>(context);
  const size_t count = static_cast<size_t>(std::max(0, attributeCount));
  state.values.resize(count);
  state.attributes.clear();
  for (size_t i = 0; i < count; ++i) {
    const xmlChar** attribute = attributes + 5 * i;
    const DaeName* name = state.names.Find(attribute[0], attribute[1], attribute[2], parser->dict, state.builder);
    const char* begin = AsText(attribute[3]);
    const char* end = AsText(attribute[4]);
    // Defaults declared by a DTD come last and are kept exactly as declared.
    const bool declared = i >= count - static_cast<size_t>(std::max(0, defaulted));
    state.attributes.emplace_back(name, declared ? std::string_view(begin, static_cast<size_t>(end - begin))
                                                 : DecodedValue(begin, end, state.values[i]));
  }
  const DaeName* name = state.names.Find(localName, prefix, uri, parser->dict, state.builder);
  state.builder.StartElement(*name, state.attributes, parser->input ? parser->input->line : 0);
}

void EndElement(void* context, const xmlChar*, const xmlChar*, const xmlChar*) { StateOf(context).builder.EndElement(); }

void Characters(void* context, const xmlChar* text, int length) {
  StateOf(context).builder.Text(AsText(text), static_cast<size_t>(std::max(0, length)));
}

KString StopMessage(StopReason reason) {
  if (reason == StopReason::kTooDeep) return KString("elements are nested more than ") + static_cast<int>(kMaxDepth) + " deep";
  return "entity declarations are not accepted";
}

// Parse errors are only recorded in the context (the tool explains them); nothing is printed.
// Without this handler libxml2 prints some of them even when told not to report errors and
// warnings. (The error parameter is const in some libxml2 versions only, hence the template.)
template <class Error>
void IgnoreError(void*, Error) {}

struct ParserContextDeleter {
  void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

struct DocDeleter {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};

// Where the parser takes its bytes from, counted on their way.
struct ByteSource {
  ByteSource(DocumentInput* file, std::string_view memory, const InputLimits& limits)
      : file(file), memory(memory), attributes(static_cast<size_t>(std::max<int64_t>(0, limits.maxAttributesPerElement))) {}
  DocumentInput* file;
  std::string_view memory;
  AttributeCounter attributes;
  size_t bytesRead = 0;
};

int ReadBytes(void* context, char* buffer, int length) {
  ByteSource& source = *static_cast<ByteSource*>(context);
  int count = 0;
  if (source.file) {
    count = source.file->Read(buffer, length);
  } else {
    count = static_cast<int>(std::min(source.memory.size(), static_cast<size_t>(std::max(0, length))));
    std::memcpy(buffer, source.memory.data(), static_cast<size_t>(count));
    source.memory.remove_prefix(static_cast<size_t>(count));
  }
  if (count <= 0) return count;
  if (!source.attributes.Scan(buffer, static_cast<size_t>(count))) return -1;
  source.bytesRead += static_cast<size_t>(count);
  return count;
}

KString TooManyAttributes(const InputLimits& limits) {
  return KString("an element has more than ") + KString(std::to_string(limits.maxAttributesPerElement)) +
         " attributes (read option MAX ATTRIBUTES PER ELEMENT)";
}

int CloseNothing(void*) { return 0; }

DaeDocumentPtr Parse(ByteSource& source, size_t inputSize, const char* url, XmlParseFailure* failure) {
  std::unique_ptr<xmlParserCtxt, ParserContextDeleter> context(xmlNewParserCtxt());
  if (!context) return nullptr;
  ParseState state(inputSize);
  context->_private = &state;
  // libxml2's own handlers still take care of the prolog and the DTD (attribute defaults);
  // elements and text come here, and libxml2 builds no tree.
  xmlSAXHandler* sax = context->sax;
  sax->entityDecl = RefuseEntityDeclaration;
  sax->startElementNs = StartElement;
  sax->endElementNs = EndElement;
  sax->characters = Characters;
  sax->ignorableWhitespace = Characters;
  sax->cdataBlock = Characters;
  sax->comment = nullptr;
  sax->processingInstruction = nullptr;
  sax->reference = nullptr;
  sax->serror = IgnoreError;
  // The returned document, when the parse succeeds, holds only the prolog.
  std::unique_ptr<xmlDoc, DocDeleter> prolog(
      xmlCtxtReadIO(context.get(), ReadBytes, CloseNothing, &source, url, nullptr, kParseOptions));
  if (state.stopped != StopReason::kNone) {
    if (failure) {
      failure->line = context->input ? context->input->line : 0;
      failure->message = StopMessage(state.stopped);
    }
    return nullptr;
  }
  if (!prolog) {
    if (failure) {
      const xmlError* error = xmlCtxtGetLastError(context.get());
      failure->line = error ? error->line : 0;
      KString message = (error && error->message) ? KString(error->message) : KString("cannot read the file");
      while (message.GetLen() > 0 && message[message.GetLen() - 1] == '\n') message = message.Left(message.GetLen() - 1);
      failure->message = message;
    }
    return nullptr;
  }
  return state.builder.Finish();
}

// The parsed document, or null with the reader's own refusal of the bytes when there is one.
DaeDocumentPtr ParseCounted(ByteSource& source, size_t inputSize, const char* url, XmlParseFailure* failure,
                            const InputLimits& limits) {
  DaeDocumentPtr document = Parse(source, inputSize, url, failure);
  if (document) document->SetInputBytes(source.bytesRead);
  if (document || !failure) return document;
  KString refusal = source.file ? source.file->Refusal() : KString();
  if (source.attributes.Exceeded()) refusal = TooManyAttributes(limits);
  if (refusal.IsEmpty()) return document;
  failure->refused = true;
  failure->message = refusal;
  return document;
}

}  // namespace

DaeDocumentPtr ParseXmlFile(const KString& path, XmlParseFailure* failure, const InputLimits& limits) {
  KString refusal;
  std::unique_ptr<DocumentInput> input = DocumentInput::Open(path, limits, refusal);
  if (!input) {
    if (failure) {
      *failure = XmlParseFailure();
      failure->refused = !refusal.IsEmpty();
      failure->message = failure->refused ? refusal : KString("failed to load external entity \"") + path + "\"";
    }
    return nullptr;
  }
  ByteSource source(input.get(), {}, limits);
  return ParseCounted(source, static_cast<size_t>(input->SizeBound()), path.Buffer(), failure, limits);
}

DaeDocumentPtr ParseXmlText(std::string_view text, XmlParseFailure* failure, const InputLimits& limits) {
  ByteSource source(nullptr, text, limits);
  return ParseCounted(source, text.size(), "text.xml", failure, limits);
}

}  // namespace zylsdk
