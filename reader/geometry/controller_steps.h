#pragma once
// Steps shared by the skin and morph parts of the controller import.

#include "reader/collada_import.h"
#include "reader/dom/dom.h"
#include "reader/geometry/mesh_sources.h"

namespace zylsdk {

// What `read` found for the source that an input's "source" attribute names among the sources of
// the skin or morph; null after the error "reading array in <source>: " + the attribute as
// written.
template <class Read>
auto ReadInputWith(KZylReaderCollada& reader, const DaeElement* input, Read&& read) {
  const KString attribute = DAE_GetProperty(input, "source");
  const auto* found = read(attribute);
  if (!found) reader.AddNotificationError("reading array in <source>: " + attribute);
  return found;
}

// The values of that source, copied out as T.
template <class T>
const KArrayTemplate<T>* ReadInputSource(KZylReaderCollada& reader, MeshSources& sources, const DaeElement* input) {
  return ReadInputWith(reader, input, [&](const KString& attribute) { return sources.Read<T>(attribute); });
}

// Its numbers, read in place.
inline const NumberSource* ReadInputNumbers(KZylReaderCollada& reader, MeshSources& sources, const DaeElement* input) {
  return ReadInputWith(reader, input, [&](const KString& attribute) { return sources.Numbers(attribute); });
}

// Reports an input whose semantic the element does not take; always false.
inline bool RejectInput(KZylReaderCollada& reader, const KString& semantic) {
  reader.AddNotificationError(semantic + " not supported in <input>");
  return false;
}

// Reads a `morph` into the controller record: its method (anything but RELATIVE is read as
// RELATIVE, with a warning), its source and its targets with their weights. False after an
// error.
bool ImportMorph(KZylReaderCollada& reader, DaeElement* morph, ControllerRecord& record);

}  // namespace zylsdk
