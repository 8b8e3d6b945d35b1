#include "reader/dom/tree_builder.h"

#include <algorithm>
#include <cstring>

#include "reader/dom/list_length.h"

namespace zylsdk {
namespace {

// The elements whose text is a list of values, and how each is read.
bool ListKind(std::string_view name, ValueKind& kind) {
  static const std::pair<std::string_view, ValueKind> kLists[] = {
      {"float_array", ValueKind::kDoubles}, {"matrix", ValueKind::kDoubles},  {"bind_shape_matrix", ValueKind::kDoubles},
      {"int_array", ValueKind::kInts},      {"p", ValueKind::kInts},          {"v", ValueKind::kInts},
      {"vcount", ValueKind::kInts},         {"Name_array", ValueKind::kWords}, {"IDREF_array", ValueKind::kWords},
      {"SID_array", ValueKind::kWords}};
  for (const auto& list : kLists)
    if (list.first == name) {
      kind = list.second;
      return true;
    }
  return false;
}

// Gives back room beyond a quarter more than the values fill (a copy, but only of what was
// read, and only when much was reserved for nothing).
template <class T>
void ShrinkToValues(std::vector<T>& values) {
  if (values.capacity() > values.size() + values.size() / 4) values.shrink_to_fit();
}

}  // namespace

DaeTreeBuilder::DaeTreeBuilder(size_t inputSize)
    : mDocument(std::make_unique<DaeDocument>()), mInputSize(inputSize), mIdName(Intern("id")) {}

const DaeName* DaeTreeBuilder::Intern(std::string_view text) {
  if (const DaeName* recent = mRecentNames.Find(text)) return recent;
  auto found = mDocument->mNames.find(text);
  const DaeName* name = found != mDocument->mNames.end() ? &found->second : nullptr;
  if (!name) {
    DaeName stored;
    stored.text = std::string_view(Store(text), text.size());
    stored.isList = ListKind(text, stored.listKind);
    name = &mDocument->mNames.emplace(stored.text, stored).first->second;
  }
  mRecentNames.Remember(name->text, name);
  return name;
}

const char* DaeTreeBuilder::Store(std::string_view text) {
  if (text.empty()) return "";
  char* stored = mDocument->Allocate(text.size() + 1, 1);
  std::memcpy(stored, text.data(), text.size());
  stored[text.size()] = '\0';
  return stored;
}

void DaeTreeBuilder::StartElement(const DaeName& name, const Attributes& attributes, int line) {
  DaeElement& element = mDocument->mElements.emplace_back();
  element.mName = name.text.data();
  element.mLine = static_cast<uint32_t>(std::max(0, line)) & 0x7fffffffu;
  if (!attributes.empty()) {
    // One piece of storage for all of them.
    size_t bytes = 0;
    for (const auto& [attributeName, value] : attributes) bytes += DaeElement::AttributeBytes(value.size());
    char* room = mDocument->Allocate(bytes, 1);
    element.mAttributes = room;
    element.mAttributeCount = static_cast<uint32_t>(attributes.size());
    for (const auto& [attributeName, value] : attributes) {
      const char* stored = DaeElement::WriteAttribute(room, attributeName->text.data(), value);
      if (attributeName == mIdName) mDocument->mIds.Add(std::string_view(stored, value.size()), &element);
      room += DaeElement::AttributeBytes(value.size());
    }
  }
  const uint32_t order = static_cast<uint32_t>(mDocument->mElements.size() - 1);
  if (!mOpen.empty()) {
    OpenElement& parent = mOpen.back();
    element.mParentDistance = order - parent.order;
    element.mPositionInParentText = static_cast<uint32_t>(parent.text.size());
    if (parent.lastChild) parent.lastChild->mNextSiblingDistance = order - parent.lastChildOrder;
    parent.lastChild = &element;
    parent.lastChildOrder = order;
  }
  mOpen.push_back({&element, nullptr, order, 0, std::string()});
  // A list inside a list is an ordinary element: its text already belongs to the outer list.
  if (!mList && name.isList) {
    mList = std::make_unique<ValueStream>(name.listKind, std::min(ExpectedListLength(element), mInputSize / 2 + 1));
    mListDepth = mOpen.size();
  }
}

void DaeTreeBuilder::Text(const char* text, size_t length) {
  if (mOpen.empty()) return;
  if (mList) mList->Append(text, length);
  // The list element itself keeps no text; elements inside it keep theirs.
  if (!mList || mOpen.size() > mListDepth) mOpen.back().text.append(text, length);
}

void DaeTreeBuilder::EndElement() {
  if (mOpen.empty()) return;
  OpenElement& open = mOpen.back();
  DaeElement& element = *open.element;
  element.mText = Store(open.text);
  element.mTextLength = static_cast<uint32_t>(open.text.size());
  if (mList && mOpen.size() == mListDepth) {
    StreamedValues& values = mDocument->mValues.emplace_back(mList->Finish());
    // Room reserved for a count the text did not fill, or left by growth, is given back.
    ShrinkToValues(values.doubles);
    ShrinkToValues(values.ints);
    ShrinkToValues(values.words);
    element.mValues = &values;
    element.mHoldsValues = 1;
    mList.reset();
  }
  mOpen.pop_back();
}

DaeDocumentPtr DaeTreeBuilder::Finish() {
  while (!mOpen.empty()) EndElement();
  mDocument->mIds.Build();
  return std::move(mDocument);
}

}  // namespace zylsdk
