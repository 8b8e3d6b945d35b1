#pragma once
// File-name helpers. They return KString values, so no pointer outlives its text.

#include "kit/kstring.h"

namespace zylsdk {

// The part of `path` after its last '/' or '\\' (the whole path when it has neither). The flag
// is accepted for compatibility (the extension is always kept).
KString ExtractFileName(const KString& path, bool keepExtension = true);
// `directory` + "/" + `name`, or `name` when `directory` is empty.
KString MakeFullPath(const KString& directory, const KString& name);
// The folder of `path`, written relative to the folder `directory`: "maps" for
// "maps/wood.tga", "../tmp/x" for "/tmp/x/wood.tga" seen from "/work". When `path` cannot be
// written relative to `directory` (a Windows drive or UNC path on this system), returns
// `directory` unchanged.
KString GetRelativePath(const KString& path, const KString& directory);
// The process's current directory ("" when it cannot be read).
KString KGetCurrentDirectory();

}  // namespace zylsdk
