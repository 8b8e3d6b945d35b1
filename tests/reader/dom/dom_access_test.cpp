// The document access helpers: attributes, text, urls, offsets, child elements by name, by id
// and techniques; all of them accept a null element.

#include <gtest/gtest.h>

#include "reader/dom/dom.h"
#include "reader/dom/tree_builder.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;
using DomAccess = zyltest::ReaderTest;

TEST_F(DomAccess, PropertyIsTheAttributeValueOrEmpty) {
  DaeElement* input = Parse("<input semantic=\"VERTEX\" source=\"#verts\" offset=\"2\" set=\"\"/>");
  EXPECT_EQ(DAE_GetProperty(input, "semantic"), "VERTEX");
  EXPECT_EQ(DAE_GetProperty(input, "source"), "#verts");
  EXPECT_EQ(DAE_GetProperty(input, "set"), "");
  EXPECT_EQ(DAE_GetProperty(input, "missing"), "");
  EXPECT_EQ(DAE_GetProperty(input, "Semantic"), "");  // names are case-sensitive
  EXPECT_EQ(DAE_GetProperty(nullptr, "id"), "");
  // An element without attributes.
  DaeElement* text = Parse("<a>text</a>");
  EXPECT_EQ(DAE_GetProperty(text, "id"), "");
}

TEST_F(DomAccess, PropertyKeepsUtf8AndDecodesCharacterReferences) {
  DaeElement* node = Parse("<node name=\"h\xc3\xa9llo&#32;&amp;\"/>");
  EXPECT_EQ(DAE_GetProperty(node, "name").Std(), "h\xc3\xa9llo &");
}

TEST_F(DomAccess, PropertyTextPointsIntoTheDocumentForAPlainValue) {
  DaeElement* node = Parse("<node sid=\"rotateX\" empty=\"\"/>");
  KString storage;
  const char* text = DAE_PropertyText(node, "sid", storage);
  EXPECT_STREQ(text, "rotateX");
  EXPECT_TRUE(storage.IsEmpty());
  // Another storage, the same characters: the document's own.
  KString otherStorage;
  EXPECT_EQ(DAE_PropertyText(node, "sid", otherStorage), text);
  EXPECT_EQ(text, node->FindAttribute("sid"));
  EXPECT_STREQ(DAE_PropertyText(node, "empty", storage), "");
  EXPECT_STREQ(DAE_PropertyText(node, "missing", storage), "");
  EXPECT_STREQ(DAE_PropertyText(nullptr, "sid", storage), "");
}

TEST_F(DomAccess, PropertyTextOfADeclaredDefaultValueIsHeldByTheStorage) {
  DaeElement* node = Parse("<!DOCTYPE node [<!ATTLIST node sid CDATA \"fromDtd\">]><node/>");
  KString storage;
  const char* text = DAE_PropertyText(node, "sid", storage);
  EXPECT_STREQ(text, "fromDtd");
  EXPECT_EQ(text, node->FindAttribute("sid"));  // held by the document, like any value
  EXPECT_EQ(DAE_GetProperty(node, "sid"), "fromDtd");
}

TEST_F(DomAccess, ContentIsTheTextOfTheElementAndItsDescendants) {
  DaeElement* author = Parse("<author>  Ada\nLovelace </author>");
  EXPECT_EQ(DAE_GetContent(author), "  Ada\nLovelace ");
  DaeElement* mixed = Parse("<a>1 <!-- note --> 2 <b>3</b><![CDATA[ <4> ]]></a>");
  EXPECT_EQ(DAE_GetContent(mixed), "1  2 3 <4> ");
  EXPECT_EQ(DAE_GetContent(Parse("<empty/>")), "");
}

TEST_F(DomAccess, ContentOfAMissingChildIsEmpty) {
  DaeElement* asset = Parse("<asset><title>T</title></asset>");
  EXPECT_EQ(DAE_GetContent(findChildByType(asset, "subject")), "");
  EXPECT_EQ(DAE_GetContent(nullptr), "");
  EXPECT_EQ(DAE_GetContent(findChildByType(asset, "title")), "T");
}

TEST_F(DomAccess, ElementTextReadsASingleTextNodeInPlace) {
  DaeElement* array = Parse("<numbers>1 2 3</numbers>");
  ElementText text(array);
  EXPECT_STREQ(text.c_str(), "1 2 3");
  EXPECT_EQ(static_cast<const void*>(text.c_str()), static_cast<const void*>(array->OwnText().data()));
  ElementText gathered(Parse("<a>1<!-- c -->2</a>"));
  EXPECT_STREQ(gathered.c_str(), "12");
  ElementText none(nullptr);
  EXPECT_STREQ(none.c_str(), "");
  ElementText cdata(Parse("<a><![CDATA[7 8]]></a>"));
  EXPECT_STREQ(cdata.c_str(), "7 8");
}

TEST_F(DomAccess, UrlDropsItsFirstCharacterWithoutLookingAtIt) {
  EXPECT_EQ(DAE_GetUrl(Parse("<instance_geometry url=\"#box-mesh\"/>")), "box-mesh");
  EXPECT_EQ(DAE_GetUrl(Parse("<instance_geometry url=\"xbox\"/>")), "box");
  EXPECT_EQ(DAE_GetUrl(Parse("<instance_geometry url=\"#\"/>")), "");
  EXPECT_EQ(DAE_GetUrl(Parse("<instance_geometry url=\"\"/>")), "");
  EXPECT_EQ(DAE_GetUrl(Parse("<instance_geometry/>")), "");
  EXPECT_EQ(DAE_GetUrl(Parse("<instance_geometry url=\"file.dae#box\"/>")), "ile.dae#box");
  EXPECT_EQ(DAE_GetUrl(nullptr), "");
}

TEST_F(DomAccess, OffsetIsAnInteger) {
  EXPECT_EQ(DAE_GetOffset(Parse("<input offset=\"3\"/>")), 3);
  EXPECT_EQ(DAE_GetOffset(Parse("<input offset=\" 12 \"/>")), 12);
  EXPECT_EQ(DAE_GetOffset(Parse("<input offset=\"-1\"/>")), -1);
  EXPECT_EQ(DAE_GetOffset(Parse("<input/>")), 0);
  EXPECT_EQ(DAE_GetOffset(Parse("<input offset=\"x\"/>")), 0);
  EXPECT_EQ(DAE_GetOffset(Parse("<input offset=\"99999999999\"/>")), 2147483647);
  EXPECT_EQ(DAE_GetOffset(nullptr), 0);
}

TEST_F(DomAccess, NamesAndElementTests) {
  DaeElement* root = Parse("<COLLADA><!-- c -->text<asset/></COLLADA>");
  EXPECT_STREQ(DAE_GetName(root), "COLLADA");
  EXPECT_STREQ(DAE_GetName(nullptr), "");
  EXPECT_TRUE(DAE_IsElement(root, "COLLADA"));
  EXPECT_FALSE(DAE_IsElement(root, "collada"));
  EXPECT_FALSE(DAE_IsElement(nullptr, "COLLADA"));
  EXPECT_STREQ(DAE_GetName(firstChildElement(root)), "asset");  // a comment is not an element
}

TEST_F(DomAccess, ElementWalkSkipsTextAndComments) {
  DaeElement* root = Parse("<r> <!-- c --> <a/> text <?pi x?> <b/> <![CDATA[x]]> </r>");
  DaeElement* a = firstChildElement(root);
  ASSERT_NE(a, nullptr);
  EXPECT_STREQ(DAE_GetName(a), "a");
  DaeElement* b = nextSiblingElement(a);
  ASSERT_NE(b, nullptr);
  EXPECT_STREQ(DAE_GetName(b), "b");
  EXPECT_EQ(nextSiblingElement(b), nullptr);
  EXPECT_EQ(firstChildElement(b), nullptr);
  EXPECT_EQ(firstChildElement(nullptr), nullptr);
  EXPECT_EQ(nextSiblingElement(nullptr), nullptr);
}

TEST_F(DomAccess, FindChildByTypeGivesTheFirstDirectChild) {
  DaeElement* root = Parse("<mesh><source id=\"1\"/><vertices/><source id=\"2\"/><x><triangles/></x></mesh>");
  EXPECT_EQ(DAE_GetProperty(findChildByType(root, "source"), "id"), "1");
  EXPECT_EQ(findChildByType(root, "triangles"), nullptr);  // only direct children
  EXPECT_EQ(findChildByType(root, "Source"), nullptr);
  EXPECT_EQ(findChildByType(nullptr, "source"), nullptr);
}

TEST_F(DomAccess, FindChildrenByTypeAppendsInDocumentOrder) {
  DaeElement* root = Parse("<mesh><source id=\"1\"/><vertices/><source id=\"2\"/><x><source id=\"3\"/></x></mesh>");
  KArrayTemplate<DaeElement*> found;
  found.Add(nullptr);  // already there: kept
  findChildrenByType(root, "source", found);
  ASSERT_EQ(found.GetCount(), 3);
  EXPECT_EQ(found[0], nullptr);
  EXPECT_EQ(DAE_GetProperty(found[1], "id"), "1");
  EXPECT_EQ(DAE_GetProperty(found[2], "id"), "2");
  KArrayTemplate<DaeElement*> none;
  findChildrenByType(root, "polylist", none);
  findChildrenByType(nullptr, "source", none);
  EXPECT_TRUE(none.IsEmpty());
}

TEST_F(DomAccess, FindChildByIdSearchesAllDescendantsInDocumentOrder) {
  DaeElement* root = Parse(
      "<skin><a><b id=\"deep\"><c id=\"twice\"/></b></a><source id=\"twice\"/><d id=\"Deep\"/>"
      "<e id=\"x y\"/></skin>");
  EXPECT_STREQ(DAE_GetName(findChildById(root, "deep")), "b");
  EXPECT_STREQ(DAE_GetName(findChildById(root, "twice")), "c");  // first in document order
  EXPECT_STREQ(DAE_GetName(findChildById(root, "Deep")), "d");
  EXPECT_STREQ(DAE_GetName(findChildById(root, "x y")), "e");
  EXPECT_EQ(findChildById(root, "skin"), nullptr);
  EXPECT_EQ(findChildById(root, ""), nullptr);
  EXPECT_EQ(findChildById(root, "#deep"), nullptr);
  EXPECT_EQ(findChildById(nullptr, "deep"), nullptr);
}

// An element's descendants end where the next sibling of it, or of its nearest ancestor that
// has one, begins; given that end, the search answers as without it.
TEST_F(DomAccess, FindChildByIdWithinAGivenEndOfDescendants) {
  DaeElement* root = Parse("<skin><a><b><c id=\"in\"/></b></a><d id=\"out\"/><e><f id=\"last\"/></e></skin>");
  DaeElement* a = firstChildElement(root);
  DaeElement* b = firstChildElement(a);
  DaeElement* d = nextSiblingElement(a);
  EXPECT_EQ(b->DescendantsEnd(), d->Order());
  EXPECT_EQ(a->DescendantsEnd(), d->Order());
  EXPECT_EQ(root->DescendantsEnd(), 7u);
  EXPECT_EQ(findChildById(b, "out"), nullptr);
  EXPECT_EQ(findChildById(b, b->DescendantsEnd(), "in"), findChildById(b, "in"));
  EXPECT_STREQ(DAE_GetName(findChildById(b, b->DescendantsEnd(), "in")), "c");
  EXPECT_EQ(findChildById(b, b->DescendantsEnd(), "out"), nullptr);
  EXPECT_STREQ(DAE_GetName(findChildById(root, root->DescendantsEnd(), "last")), "f");
  EXPECT_EQ(findChildById(nullptr, 0, "in"), nullptr);
}

TEST_F(DomAccess, FindChildByIdWithAnEmptyIdNeedsAnEmptyIdAttribute) {
  DaeElement* root = Parse("<skin><a/><b name=\"\"/><c id=\"\"/></skin>");
  EXPECT_STREQ(DAE_GetName(findChildById(root, "")), "c");
}

TEST_F(DomAccess, FindChildByIdHandlesDeepTreesWithoutRecursion) {
  // Built by hand: the parser would refuse this depth.
  DaeTreeBuilder builder(0);
  const DaeName* node = builder.Intern("node");
  builder.StartElement(*builder.Intern("root"), {}, 1);
  for (int depth = 0; depth < 100000; ++depth) builder.StartElement(*node, {}, 1);
  builder.StartElement(*node, {{builder.Intern("id"), "bottom"}}, 1);
  DaeDocumentPtr document = builder.Finish();
  DaeElement* root = document->Root();
  EXPECT_EQ(findChildById(root, "bottom"), document->ElementAt(100001));
  EXPECT_EQ(findChildById(root, "absent"), nullptr);
  EXPECT_EQ(DAE_GetContent(root), "");
}

TEST_F(DomAccess, TechniqueByProfileAndTheFirstTechnique) {
  DaeElement* root = Parse(
      "<extra><technique profile=\"MAYA\"/><technique_common id=\"common\"/>"
      "<technique profile=\"FCOLLADA\" id=\"fc\"/><x><technique profile=\"OTHER\"/></x></extra>");
  EXPECT_EQ(DAE_GetProperty(getTechniqueNode(root, "FCOLLADA"), "id"), "fc");
  EXPECT_EQ(DAE_GetProperty(getTechniqueNode(root), "profile"), "MAYA");
  EXPECT_EQ(getTechniqueNode(root, "fcollada"), nullptr);
  EXPECT_EQ(getTechniqueNode(root, "OTHER"), nullptr);  // not a child
  EXPECT_EQ(DAE_GetProperty(getTechniqueCommonNode(root), "id"), "common");
  EXPECT_EQ(getTechniqueCommonNode(Parse("<light/>")), nullptr);
  EXPECT_EQ(getTechniqueNode(Parse("<light/>")), nullptr);
  EXPECT_EQ(getTechniqueNode(nullptr, "MAYA"), nullptr);
  EXPECT_EQ(getTechniqueCommonNode(nullptr), nullptr);
}

}  // namespace
