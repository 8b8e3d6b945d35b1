#pragma once
// Structure-aware changes to a COLLADA document, for the fuzzer's custom mutator: the document
// is parsed as XML, changed the way a broken exporter or a hostile author would change it, and
// written back. Byte-level mutation alone rarely gets past the parser with a document that still
// means something; these changes keep it well-formed and reach the reader's own checks.
//
// One call makes one change, chosen at random:
//   - an element deleted, duplicated (the copy placed after it) or moved before its previous
//     sibling;
//   - a number (a count, stride, offset or set attribute, or a number in an element's text) set
//     to an extreme: 0, -1, the int limits, 2^32, 1e308, -0, nan, inf;
//   - a reference ("#id" or a plain id in url, source, target, symbol, material, texture...)
//     redirected to a missing id, to the id of an element of another kind, or to the element
//     that holds it;
//   - the reading mode switched (see ReadingModeOf).

#include <cstdint>
#include <random>
#include <string>

namespace zylfuzz {

// Applies one structural change. False when the document does not parse as XML or offered
// nothing to change; `document` is then left as it was.
bool MutateStructure(std::string& document, std::mt19937& random);

// The reading mode an input asks for: "COMPLETE" when its last byte is odd (a tab or a
// carriage return after the root element, say), the default mode otherwise. The document keeps
// every byte, so that any well-formed document stays one in both modes.
bool AsksForCompleteMode(const uint8_t* data, size_t size);
// Switches the mode an input asks for by changing or appending a white-space byte at its end.
void SwitchReadingMode(std::string& document);

}  // namespace zylfuzz
