#pragma once
// The JSON dump of a read: the tool's observable contract (docs/dump.md describes it).

#include <ostream>

#include "tools/zyldae/json_sink.h"
#include "tools/zyldae/json_writer.h"
#include "tools/zyldae/read_file.h"

namespace zyldae {

// The dump's format version, its "dump" field. 2: notifications carry "line" and "element".
inline constexpr int kDumpVersion = 2;

// Tells `sink` the whole dump document of a read of `file`, walking the scene once. `brief`
// leaves out the long arrays and keeps their counts, and looks at nothing else.
void DumpRead(const ReadResult& read, const zylsdk::KString& file, bool brief, JsonSink& sink);
// The same document as a value.
Json DumpRead(const ReadResult& read, const zylsdk::KString& file, bool brief);
// The "scene" part alone, as a value.
Json DumpScene(const zylsdk::KZylScene& scene, bool brief);

}  // namespace zyldae
