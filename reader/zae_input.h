#pragma once
// A .zae archive: a zip file whose manifest.xml names the COLLADA document to read in its
// <dae_root> element. The document is unpacked as the parser asks for it, within a bound.

#include <cstdio>
#include <memory>

#include "kit/kstring.h"
#include "reader/document_input.h"

namespace zylsdk {

// True when the file's first bytes are those of a zip archive.
bool StartsAsZip(const unsigned char* bytes, size_t count);

// The input of the document that the archive at `path` names, unpacking to at most `cap`
// bytes; null when the archive cannot be read or names no document in it, with `refusal`
// saying why. `file` is the archive's open file, owned by the input (closed on failure).
std::unique_ptr<DocumentInput> OpenZaeDocument(FILE* file, const KString& path, int64_t cap, KString& refusal);

}  // namespace zylsdk
