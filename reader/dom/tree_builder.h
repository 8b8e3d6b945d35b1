#pragma once
// Builds a DaeDocument from the events of a streaming parser: start tags with their
// attributes, pieces of text, end tags. List elements convert their text as it arrives.

#include <string>
#include <string_view>
#include <vector>

#include "kit/recent_names.h"
#include "reader/dom/element.h"
#include "reader/dom/streamed_values.h"

namespace zylsdk {

class DaeTreeBuilder {
 public:
  using Attributes = std::vector<std::pair<const DaeName*, std::string_view>>;

  // `inputSize` bounds how many values any list can hold (each takes at least two characters
  // of the input), so that a declared count never reserves more than the input can fill.
  explicit DaeTreeBuilder(size_t inputSize);

  // The document's name for `text`: the same DaeName for the same characters.
  const DaeName* Intern(std::string_view text);
  // Names come from Intern; attribute values are copied.
  void StartElement(const DaeName& name, const Attributes& attributes, int line);
  void Text(const char* text, size_t length);
  void EndElement();
  // The open elements.
  size_t Depth() const { return mOpen.size(); }
  // The finished document (elements still open are closed).
  DaeDocumentPtr Finish();

 private:
  struct OpenElement {
    DaeElement* element;
    DaeElement* lastChild;
    // Their numbers in document order, which the distances between relatives are made of.
    uint32_t order;
    uint32_t lastChildOrder;
    std::string text;
  };

  const char* Store(std::string_view text);

  RecentNames<const DaeName> mRecentNames;

  DaeDocumentPtr mDocument;
  size_t mInputSize;
  const DaeName* mIdName;  // "id", whose values the document indexes
  std::vector<OpenElement> mOpen;
  // The list element whose text is being converted (the outermost one open), and how deep it is.
  std::unique_ptr<ValueStream> mList;
  size_t mListDepth = 0;
};

}  // namespace zylsdk
