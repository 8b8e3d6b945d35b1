// The reader's document tree as the parser builds it: names, attributes, lines, text in
// document order, the index of ids, and list texts converted into values.

#include <gtest/gtest.h>

#include <string>

#include "reader/dom/dom.h"
#include "reader/xml_document.h"

namespace {

using namespace zylsdk;

DaeDocumentPtr ParseOrFail(const std::string& xml) {
  XmlParseFailure failure;
  DaeDocumentPtr document = ParseXmlText(xml, &failure);
  EXPECT_NE(document, nullptr) << failure.message.Std();
  return document;
}

TEST(ElementTree, ElementsKnowTheirLineAndPlace) {
  DaeDocumentPtr document = ParseOrFail("<root>\n  <a>\n    <b/>\n  </a>\n  <c\n  id=\"x\"/>\n</root>");
  DaeElement* root = document->Root();
  DaeElement* a = firstChildElement(root);
  DaeElement* b = firstChildElement(a);
  DaeElement* c = nextSiblingElement(a);
  EXPECT_EQ(root->Line(), 1);
  EXPECT_EQ(a->Line(), 2);
  EXPECT_EQ(b->Line(), 3);
  EXPECT_EQ(c->Line(), 6);  // where its start tag ends
  EXPECT_EQ(parentElement(b), a);
  EXPECT_EQ(parentElement(root), nullptr);
  EXPECT_EQ(nextSiblingElement(c), nullptr);
  EXPECT_EQ(document->ElementCount(), 4u);
  EXPECT_EQ(a->DescendantsEnd(), 3u);
  // Names are interned: every "node" element points at one text.
  DaeDocumentPtr nodes = ParseOrFail("<n><node/><node/></n>");
  EXPECT_EQ(firstChildElement(nodes->Root())->Name(), nextSiblingElement(firstChildElement(nodes->Root()))->Name());
}

TEST(ElementTree, MixedContentKeepsItsOrder) {
  DaeDocumentPtr document = ParseOrFail("<a>1<b>2<c>3</c>4</b>5<!-- x --><d/>6<![CDATA[7&]]>&amp;&#56;</a>");
  EXPECT_EQ(DAE_GetContent(document->Root()), "1234567&&8");
  EXPECT_EQ(DAE_GetContent(firstChildElement(document->Root())), "234");
}

TEST(ElementTree, ListsHoldValuesConvertedWhileStreaming) {
  DaeDocumentPtr document = ParseOrFail(
      "<s><float_array count=\"1000000000\">1 2<!-- cut -->5 &#51;.5<x>9</x>e1</float_array>"
      "<p>1 2<![CDATA[3 4]]> -5</p><Name_array>a b&#32;c</Name_array><matrix>1 2 3</matrix></s>");
  DaeElement* root = document->Root();
  std::vector<double> storage;
  EXPECT_EQ(DAE_GetDoubles(findChildByType(root, "float_array"), storage), (std::vector<double>{1, 25, 3.59e1}));
  EXPECT_TRUE(storage.empty());  // the values were already there
  std::vector<int> ints;
  EXPECT_EQ(DAE_GetInts(findChildByType(root, "p"), ints), (std::vector<int>{1, 23, 4, -5}));
  std::vector<KString> words;
  EXPECT_EQ(DAE_GetWords(findChildByType(root, "Name_array"), words).size(), 3u);
  // A list keeps no text of its own.
  EXPECT_EQ(DAE_GetContent(findChildByType(root, "p")), "");
  const KZylXMatrix matrix = DAE_GetMatrix(findChildByType(root, "matrix"));
  EXPECT_EQ(matrix.mData[0][0], 1.0);
  EXPECT_EQ(matrix.mData[1][0], 2.0);
  EXPECT_EQ(matrix.mData[2][0], 3.0);
  EXPECT_EQ(matrix.mData[3][3], 1.0);  // from the identity
  EXPECT_EQ(matrix.mData[0][1], 0.0);
}

TEST(ElementTree, AListInsideAListIsReadFromItsText) {
  DaeDocumentPtr document = ParseOrFail("<p>1 <p>2 3</p> 4</p>");
  std::vector<int> outer;
  std::vector<int> inner;
  EXPECT_EQ(DAE_GetInts(document->Root(), outer), (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(DAE_GetInts(firstChildElement(document->Root()), inner), (std::vector<int>{2, 3}));
  EXPECT_EQ(inner, (std::vector<int>{2, 3}));  // read now, from the text
}

TEST(ElementTree, AttributesAsTheDocumentMeansThem) {
  DaeDocumentPtr document = ParseOrFail(
      "<!DOCTYPE r [<!ATTLIST node sid CDATA \"a&amp;b\">]>"
      "<r xmlns:x=\"urn:x\"><node name=\"p&amp;q&#38;&lt;\" x:id=\"bound\"/><y:node y:id=\"free\"/></r>");
  DaeElement* node = firstChildElement(document->Root());
  EXPECT_EQ(DAE_GetProperty(node, "name").Std(), "p&q&<");
  EXPECT_EQ(DAE_GetProperty(node, "id").Std(), "bound");  // a bound prefix is dropped
  EXPECT_EQ(DAE_GetProperty(node, "sid").Std(), "a&#38;b");  // a declared default, as declared
  DaeElement* free = nextSiblingElement(node);
  EXPECT_STREQ(DAE_GetName(free), "y:node");  // an unbound prefix stays
  EXPECT_EQ(DAE_GetProperty(free, "y:id").Std(), "free");
  EXPECT_FALSE(DAE_HasProperty(free, "sid"));  // the default is for "node" only
}

TEST(ElementTree, IdsAreFoundAmongDescendantsOnly) {
  DaeDocumentPtr document = ParseOrFail(
      "<r><a id=\"k\"/><b><c id=\"k\"/><d><e id=\"k\"/></d></b><f id=\"k\"/><g id=\"\"/></r>");
  DaeElement* root = document->Root();
  DaeElement* b = findChildByType(root, "b");
  EXPECT_EQ(findChildById(root, "k"), findChildByType(root, "a"));
  EXPECT_EQ(findChildById(b, "k"), findChildByType(b, "c"));
  EXPECT_EQ(findChildById(findChildByType(b, "d"), "k"), findChildByType(findChildByType(b, "d"), "e"));
  EXPECT_EQ(findChildById(findChildByType(b, "c"), "k"), nullptr);  // not itself
  EXPECT_EQ(findChildById(findChildByType(root, "f"), "k"), nullptr);
  EXPECT_EQ(findChildById(root, ""), findChildByType(root, "g"));
}

}  // namespace
