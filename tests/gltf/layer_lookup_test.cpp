// Layer element lookup: every mapping and reference mode, and indices outside their arrays.

#include <gtest/gtest.h>

#include "gltf/layer_lookup.h"

namespace {

using namespace zylsdk;
using zylgltf::DirectIndex;
using zylgltf::VertexPlace;

KZylLayerElementUV Element(KZylLayerElement::EMappingMode mapping, KZylLayerElement::EReferenceMode reference) {
  KZylLayerElementUV element("");
  element.SetMappingMode(mapping);
  element.SetReferenceMode(reference);
  for (int i = 0; i < 4; ++i) element.GetDirectArray().Add(KZylVector2(i, 0));
  return element;
}

const VertexPlace kPlace{2, 1, 3};  // polygon 2, polygon vertex 1, control point 3

TEST(DirectIndex, DirectModesPickTheEntryOfTheirMapping) {
  EXPECT_EQ(DirectIndex(Element(KZylLayerElement::eByControlPoint, KZylLayerElement::eDirect), 4, kPlace), 3);
  EXPECT_EQ(DirectIndex(Element(KZylLayerElement::eByPolygonVertex, KZylLayerElement::eDirect), 4, kPlace), 1);
  EXPECT_EQ(DirectIndex(Element(KZylLayerElement::eByPolygon, KZylLayerElement::eDirect), 4, kPlace), 2);
  EXPECT_EQ(DirectIndex(Element(KZylLayerElement::eAllSame, KZylLayerElement::eDirect), 4, kPlace), 0);
}

TEST(DirectIndex, IndexModesGoThroughTheIndexArray) {
  for (auto reference : {KZylLayerElement::eIndex, KZylLayerElement::eIndexToDirect}) {
    KZylLayerElementUV element = Element(KZylLayerElement::eByPolygonVertex, reference);
    for (int i : {3, 0, 2}) element.GetIndexArray().Add(i);
    EXPECT_EQ(DirectIndex(element, 4, kPlace), 0);
    EXPECT_EQ(DirectIndex(element, 4, VertexPlace{0, 2, 0}), 2);
  }
}

TEST(DirectIndex, NothingOutsideTheArraysIsFollowed) {
  KZylLayerElementUV indexed = Element(KZylLayerElement::eByControlPoint, KZylLayerElement::eIndexToDirect);
  for (int i : {1, -1, 7, 2}) indexed.GetIndexArray().Add(i);
  EXPECT_EQ(DirectIndex(indexed, 4, VertexPlace{0, 0, 1}), -1);   // a negative index
  EXPECT_EQ(DirectIndex(indexed, 4, VertexPlace{0, 0, 2}), -1);   // past the direct array
  EXPECT_EQ(DirectIndex(indexed, 4, VertexPlace{0, 0, 9}), -1);   // past the index array
  EXPECT_EQ(DirectIndex(indexed, 4, VertexPlace{0, 0, -5}), -1);  // a negative place
  EXPECT_EQ(DirectIndex(Element(KZylLayerElement::eByControlPoint, KZylLayerElement::eDirect), 4, VertexPlace{0, 0, 4}), -1);
  EXPECT_EQ(DirectIndex(Element(KZylLayerElement::eByEdge, KZylLayerElement::eDirect), 4, kPlace), -1);
  EXPECT_EQ(DirectIndex(Element(KZylLayerElement::eNone, KZylLayerElement::eDirect), 4, kPlace), -1);
}

TEST(LayerValue, FallsBackOutsideTheArrays) {
  KZylLayerElementUV element = Element(KZylLayerElement::eByControlPoint, KZylLayerElement::eDirect);
  EXPECT_EQ(zylgltf::LayerValue(element, VertexPlace{0, 0, 2}, KZylVector2(-1, -1)), KZylVector2(2, 0));
  EXPECT_EQ(zylgltf::LayerValue(element, VertexPlace{0, 0, 40}, KZylVector2(-1, -1)), KZylVector2(-1, -1));
}

}  // namespace
