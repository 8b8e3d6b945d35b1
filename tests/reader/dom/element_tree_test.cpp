// The reader's document tree as the parser builds it: names, attributes, lines, text in
// document order, the index of ids, and list texts converted into values (allocated for the
// length their elements announce, holding what their text holds).

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reader/dom/dom.h"
#include "reader/dom/id_index.h"
#include "reader/dom/list_length.h"
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

// Elements live in blocks of a few hundred at first: a parent and its first child may sit in
// different blocks. Every element's children, found through FirstChild and NextSibling, are
// those whose Parent() it is, in document order.
TEST(ElementTree, ChildrenAreFoundAcrossTheTreesBlocks) {
  std::string xml = "<root>";
  for (int i = 0; i < 3000; ++i) {
    const int depth = i % 7;
    for (int d = 0; d < depth; ++d) xml += "<e>";
    xml += "<leaf>t</leaf>";
    for (int d = 0; d < depth; ++d) xml += "</e>";
  }
  xml += "</root>";
  DaeDocumentPtr document = ParseOrFail(xml);
  ASSERT_GT(document->ElementCount(), 10000u);
  std::vector<std::vector<const DaeElement*>> children(document->ElementCount());
  for (uint32_t order = 1; order < document->ElementCount(); ++order) {
    const DaeElement* element = document->ElementAt(order);
    ASSERT_NE(element->Parent(), nullptr);
    children[element->Parent()->Order()].push_back(element);
  }
  for (uint32_t order = 0; order < document->ElementCount(); ++order) {
    std::vector<const DaeElement*> walked;
    for (const DaeElement* child = document->ElementAt(order)->FirstChild(); child; child = child->NextSibling())
      walked.push_back(child);
    ASSERT_EQ(walked, children[order]) << "element " << order;
  }
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

TEST(ElementTree, ReleasingListsEmptiesThoseOfTheElementAndItsDescendantsOnly) {
  DaeDocumentPtr document = ParseOrFail(
      "<s><v>0</v><g><float_array>1 2</float_array><m><p>3 4</p><Name_array>a b</Name_array></m></g>"
      "<p>5 6</p><h><vcount>7</vcount></h></s>");
  DaeElement* root = document->Root();
  DaeElement* before = firstChildElement(root);
  DaeElement* g = nextSiblingElement(before);
  DaeElement* after = nextSiblingElement(g);
  DaeElement* m = findChildByType(g, "m");
  document->ReleaseLists(*g);
  std::vector<double> doubles;
  std::vector<int> ints;
  std::vector<KString> words;
  EXPECT_TRUE(DAE_GetDoubles(findChildByType(g, "float_array"), doubles).empty());
  EXPECT_TRUE(DAE_GetInts(findChildByType(m, "p"), ints).empty());
  EXPECT_TRUE(DAE_GetWords(findChildByType(m, "Name_array"), words).empty());
  // Nothing outside the element is touched, and releasing again changes nothing.
  document->ReleaseLists(*g);
  EXPECT_EQ(DAE_GetInts(before, ints), (std::vector<int>{0}));
  EXPECT_EQ(DAE_GetInts(after, ints), (std::vector<int>{5, 6}));
  EXPECT_EQ(DAE_GetInts(findChildByType(nextSiblingElement(after), "vcount"), ints), (std::vector<int>{7}));
  // A list element alone.
  document->ReleaseLists(*after);
  EXPECT_TRUE(DAE_GetInts(after, ints).empty());
  EXPECT_EQ(DAE_GetInts(findChildByType(nextSiblingElement(after), "vcount"), ints), (std::vector<int>{7}));
}

TEST(ElementTree, ReleasingTheFrontOfAListGivesBackItsWholePagesOnly) {
  // Two lists of 20,000 values each, every value 5 (more than a page of each kind).
  std::string text = "<s><p>";
  for (int i = 0; i < 20000; ++i) text += "5 ";
  text += "</p><float_array>";
  for (int i = 0; i < 20000; ++i) text += "5 ";
  text += "</float_array><Name_array>a b</Name_array></s>";
  DaeDocumentPtr document = ParseOrFail(text.c_str());
  DaeElement* root = document->Root();
  DaeElement* p = findChildByType(root, "p");
  DaeElement* floats = findChildByType(root, "float_array");
  document->ReleaseListFront(*p, 10000);
  document->ReleaseListFront(*floats, 10000);
  document->ReleaseListFront(*findChildByType(root, "Name_array"), 1);
  document->ReleaseListFront(*root, 5);  // not a list: nothing happens
  std::vector<int> ints;
  std::vector<double> doubles;
  std::vector<KString> words;
  const std::vector<int>& intValues = DAE_GetInts(p, ints);
  const std::vector<double>& doubleValues = DAE_GetDoubles(floats, doubles);
  ASSERT_EQ(intValues.size(), 20000u);
  ASSERT_EQ(doubleValues.size(), 20000u);
  // Whole pages of the front read as zeros, everything past the front is kept.
#if defined(__linux__)
  EXPECT_EQ(intValues[5000], 0);
  EXPECT_EQ(doubleValues[5000], 0.0);
#endif
  for (size_t i = 10000; i < 20000; ++i) {
    ASSERT_EQ(intValues[i], 5) << i;
    ASSERT_EQ(doubleValues[i], 5.0) << i;
  }
  EXPECT_EQ(DAE_GetWords(findChildByType(root, "Name_array"), words), (std::vector<KString>{"a", "b"}));
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

TEST(ElementTree, NamesMatchOnlyWhole) {
  DaeDocumentPtr document = ParseOrFail("<r><rotate sidX=\"long\" sid=\"whole\" s=\"short\"/></r>");
  DaeElement* rotate = firstChildElement(document->Root());
  EXPECT_TRUE(DAE_IsElement(rotate, "rotate"));
  EXPECT_FALSE(DAE_IsElement(rotate, "rotateX"));  // the element's name is a prefix
  EXPECT_FALSE(DAE_IsElement(rotate, "rot"));      // the name asked is a prefix
  EXPECT_FALSE(DAE_IsElement(rotate, ""));
  EXPECT_EQ(DAE_GetProperty(rotate, "sid").Std(), "whole");
  EXPECT_EQ(DAE_GetProperty(rotate, "s").Std(), "short");
  EXPECT_FALSE(DAE_HasProperty(rotate, "si"));
  EXPECT_FALSE(DAE_HasProperty(rotate, "sidXY"));
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

TEST(ElementTree, ManyIdsAreEachFoundWithEveryElementThatHasThem) {
  // Ids spread over a table far larger than its first size; every third id is given to a second
  // element.
  std::string xml = "<r>";
  for (int i = 0; i < 5000; ++i) xml += "<n id=\"node" + std::to_string(i) + "\" line=\"" + std::to_string(i) + "\"/>";
  for (int i = 0; i < 5000; i += 3) xml += "<m id=\"node" + std::to_string(i) + "\"/>";
  xml += "</r>";
  DaeDocumentPtr document = ParseOrFail(xml);
  ASSERT_NE(document, nullptr);
  for (int i = 0; i < 5000; ++i) {
    const DaeElementSpan found = document->ElementsWithId("node" + std::to_string(i));
    ASSERT_EQ(found.size, i % 3 == 0 ? 2u : 1u) << i;
    EXPECT_STREQ(found.data[0]->Name(), "n");
    EXPECT_EQ(found.data[0]->FindAttribute("line"), std::to_string(i));
    if (found.size == 2) {
      EXPECT_STREQ(found.data[1]->Name(), "m");
    }
  }
  EXPECT_TRUE(document->ElementsWithId("node5000").empty());
  EXPECT_TRUE(document->ElementsWithId("").empty());
  EXPECT_TRUE(document->ElementsWithId("node").empty());
}

// An index finds what was added before its last build, and a later build adds to what it holds
// (moving it to a larger table) without losing the document order of a shared id.
TEST(ElementTree, AnIdIndexFindsWhatCameBeforeItsLastBuild) {
  std::string xml = "<r>";
  for (int i = 0; i < 600; ++i) xml += "<n id=\"id" + std::to_string(i % 400) + "\"/>";
  xml += "</r>";
  DaeDocumentPtr document = ParseOrFail(xml);
  ASSERT_NE(document, nullptr);
  std::vector<DaeElement*> elements;
  for (DaeElement* n = document->Root()->FirstChild(); n; n = n->NextSibling()) elements.push_back(n);
  ASSERT_EQ(elements.size(), 600u);
  IdIndex index;
  for (int i = 0; i < 50; ++i) index.Add(elements[i]->FindAttribute("id"), elements[i]);
  EXPECT_TRUE(index.Find("id0").empty());  // not built yet
  index.Build();
  ASSERT_EQ(index.Find("id49").size, 1u);
  EXPECT_EQ(index.Find("id49").data[0], elements[49]);
  EXPECT_TRUE(index.Find("id50").empty());
  for (int i = 50; i < 600; ++i) index.Add(elements[i]->FindAttribute("id"), elements[i]);
  index.Build();
  for (int i = 0; i < 400; ++i) {
    const DaeElementSpan found = index.Find("id" + std::to_string(i));
    ASSERT_EQ(found.size, i < 200 ? 2u : 1u) << i;
    EXPECT_EQ(found.data[0], elements[i]);
    if (found.size == 2) {
      EXPECT_EQ(found.data[1], elements[i + 400]);
    }
  }
}

// The expectation for the first `list` element under the root's child `parent`.
size_t Expected(const DaeDocumentPtr& document, const char* parent, const char* list) {
  const DaeElement* container = findChildByType(document->Root(), parent);
  const DaeElement* element = findChildByType(container, list);
  EXPECT_NE(element, nullptr) << parent << "/" << list;
  return element ? ExpectedListLength(*element) : 0;
}

TEST(ElementTree, ListLengthCountAttributesAndWhatSiblingsAnnounce) {
  DaeDocumentPtr document = ParseOrFail(
      "<m><float_array count=\"7\">1</float_array>"
      "<triangles count=\"4\"><input offset=\"0\"/><input offset=\"2\"/><input offset=\"1\"/><p>1</p></triangles>"
      "<lines count=\"5\"><input offset=\"0\"/><p>1</p></lines>"
      "<polylist count=\"3\"><input offset=\"0\"/><input offset=\"1\"/><vcount>3 4 5</vcount><p>1</p></polylist>"
      "<vertex_weights count=\"2\"><input offset=\"0\"/><input offset=\"1\"/><vcount>1 2</vcount><v>1</v></vertex_weights>"
      "<polygons count=\"9\"><input offset=\"0\"/><p>1</p></polygons>"
      "<int_array count=\"-3\">1</int_array><tristrips count=\"2\"><p>1</p></tristrips></m>");
  EXPECT_EQ(ExpectedListLength(*findChildByType(document->Root(), "float_array")), 7u);
  EXPECT_EQ(Expected(document, "triangles", "p"), 36u);  // 4 triangles x 3 vertices x 3 indices
  EXPECT_EQ(Expected(document, "lines", "p"), 10u);
  EXPECT_EQ(Expected(document, "polylist", "p"), 24u);  // 12 vertices x 2 indices
  EXPECT_EQ(Expected(document, "vertex_weights", "v"), 6u);
  EXPECT_EQ(Expected(document, "polylist", "vcount"), 3u);
  EXPECT_EQ(Expected(document, "vertex_weights", "vcount"), 2u);
  // Nothing tells how long one polygon of `polygons` or one strip is; a negative count is none.
  EXPECT_EQ(Expected(document, "polygons", "p"), 0u);
  EXPECT_EQ(Expected(document, "tristrips", "p"), 0u);
  EXPECT_EQ(ExpectedListLength(*findChildByType(document->Root(), "int_array")), 0u);
}

TEST(ElementTree, ListLengthHugeAnnouncementsStayBounded) {
  DaeDocumentPtr document = ParseOrFail(
      "<m><polylist><input offset=\"2147483647\"/><vcount>2147483647 2147483647</vcount><p>1 2</p></polylist></m>");
  EXPECT_LE(Expected(document, "polylist", "p"), size_t{1} << 40);
  std::vector<int> storage;
  EXPECT_EQ(DAE_GetInts(findChildByType(findChildByType(document->Root(), "polylist"), "p"), storage),
            (std::vector<int>{1, 2}));
}

TEST(ElementTree, ListLengthValuesAreThoseOfTheTextWhateverWasAnnounced) {
  DaeDocumentPtr document = ParseOrFail(
      "<m><triangles count=\"1\"><input offset=\"0\"/><p>1 2 3 4 5 6 7 8 9</p></triangles>"
      "<lines count=\"100\"><input offset=\"0\"/><p>4 5</p></lines>"
      "<float_array count=\"2\">1 2 3</float_array></m>");
  std::vector<int> storage;
  EXPECT_EQ(DAE_GetInts(findChildByType(findChildByType(document->Root(), "triangles"), "p"), storage),
            (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(DAE_GetInts(findChildByType(findChildByType(document->Root(), "lines"), "p"), storage),
            (std::vector<int>{4, 5}));
  std::vector<double> doubles;
  EXPECT_EQ(DAE_GetDoubles(findChildByType(document->Root(), "float_array"), doubles), (std::vector<double>{1, 2, 3}));
}

// A list is given the room its siblings announce while it streams: a `p` a little shorter than
// announced keeps that room (a list that had grown by doubling would have been cut to its size).
TEST(ElementTree, ListsStreamIntoTheRoomTheirSiblingsAnnounce) {
  std::string p;
  for (int i = 0; i < 290; ++i) p += std::to_string(i) + " ";
  DaeDocumentPtr document = ParseOrFail(
      "<m><triangles count=\"50\"><input offset=\"0\"/><input offset=\"1\"/><p>" + p +
      "</p></triangles><polylist count=\"2\"><input offset=\"0\"/><vcount>100 200</vcount><p>" + p +
      "</p></polylist></m>");
  for (const char* parent : {"triangles", "polylist"}) {
    const DaeElement* list = findChildByType(findChildByType(document->Root(), parent), "p");
    ASSERT_NE(list->Values(), nullptr) << parent;
    EXPECT_EQ(list->Values()->ints.size(), 290u) << parent;
    EXPECT_EQ(list->Values()->ints.capacity(), 300u) << parent;
  }
}

}  // namespace
