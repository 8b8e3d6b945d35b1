#pragma once
// What holds for the scene of any read, whatever the document: the checker every test runs
// after a read, the corpus tests run on third-party documents and the fuzz target runs on every
// input (aborting on a violation). It needs no test framework, so that the fuzz target can use
// it as it is.
//
// Checked:
//   - the hierarchy: every node below the root has its parent, belongs to the scene and has an
//     attribute;
//   - meshes: polygons lie inside the polygon-vertex array, and with `indicesInRange` each
//     polygon vertex indexes the control points or is -1 and every index array of a layer
//     element indexes its direct array (or is -1); material and texture entries are null or
//     objects the walk of the nodes reaches; shapes have their geometry's control-point count;
//   - skins: weights and indices pair up, and with `indicesInRange` cluster indices index the
//     control points. (A cluster's link and a bind pose's nodes need not be nodes of the scene: the reading keeps
//     on purpose the placeholder joints it made for joints that no node of the scene names, and
//     bind poses name the nodes of the visual scene that was copied.)
//   - materials: every material connected to the scene is one a node of the scene uses;
//   - animation: every curve's keys stand in strictly increasing time;
//   - with `finite`: transforms, control points, normals, UVs, colours, weights and key values
//     are finite numbers. Only a document whose numbers are all modest (see ModestNumbers) can
//     promise that: the reader keeps "nan" and "inf" as it reads them.

#include <string>
#include <vector>

#include "kit/zylsdk.h"

namespace zyltest {

struct InvariantChecks {
  bool finite = true;
  // Polygon vertices, layer-element and cluster indices inside their arrays (or -1). The traditional
  // reading keeps a document's indices as it gives them, so only the complete reading promises it.
  bool indicesInRange = true;
};

// The broken invariants of `scene`, one line each naming where; empty when all hold. The list
// stops after a few dozen lines, so that a broken scene of any size gives a short report.
std::vector<std::string> SceneViolations(const zylsdk::KZylScene& scene, const InvariantChecks& checks = {});

// True when the text cannot make the reader hold a number that is not finite: no "nan" or
// "inf" in any case, no exponent of more than two digits and no run of more than 30 digits.
bool ModestNumbers(const std::string& text);

// The checks that fit a document given as text, read in one mode or the other: finiteness
// only for modest numbers, indices in range only for the complete reading.
InvariantChecks ChecksFor(const std::string& document, bool complete);

}  // namespace zyltest
