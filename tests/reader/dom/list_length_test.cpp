// How many values a list is expected to hold before its text arrives, and the values it holds
// whatever was expected.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reader/dom/dom.h"
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

// The expectation for the first `list` element under the root's child `parent`.
size_t Expected(const DaeDocumentPtr& document, const char* parent, const char* list) {
  const DaeElement* container = findChildByType(document->Root(), parent);
  const DaeElement* element = findChildByType(container, list);
  EXPECT_NE(element, nullptr) << parent << "/" << list;
  return element ? ExpectedListLength(*element) : 0;
}

TEST(ListLength, CountAttributesAndWhatSiblingsAnnounce) {
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
  // Nothing tells how long one polygon of `polygons` or one strip is; a negative count is none.
  EXPECT_EQ(Expected(document, "polygons", "p"), 0u);
  EXPECT_EQ(Expected(document, "tristrips", "p"), 0u);
  EXPECT_EQ(ExpectedListLength(*findChildByType(document->Root(), "int_array")), 0u);
}

TEST(ListLength, HugeAnnouncementsStayBounded) {
  DaeDocumentPtr document = ParseOrFail(
      "<m><polylist><input offset=\"2147483647\"/><vcount>2147483647 2147483647</vcount><p>1 2</p></polylist></m>");
  EXPECT_LE(Expected(document, "polylist", "p"), size_t{1} << 40);
  std::vector<int> storage;
  EXPECT_EQ(DAE_GetInts(findChildByType(findChildByType(document->Root(), "polylist"), "p"), storage),
            (std::vector<int>{1, 2}));
}

TEST(ListLength, ValuesAreThoseOfTheTextWhateverWasAnnounced) {
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

}  // namespace
