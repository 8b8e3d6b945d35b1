#pragma once
// The JSON dump of a read: the tool's observable contract (docs/dump.md describes it).

#include "tools/zyldae/json_writer.h"
#include "tools/zyldae/read_file.h"

namespace zyldae {

// The dump's format version, its "dump" field. 2: notifications carry "line" and "element".
inline constexpr int kDumpVersion = 2;

// The whole dump document of a read of `file`. `brief` leaves out the long arrays and keeps
// their counts.
Json DumpRead(const ReadResult& read, const zylsdk::KString& file, bool brief);
// The "scene" part alone.
Json DumpScene(const zylsdk::KZylScene& scene, bool brief);

}  // namespace zyldae
