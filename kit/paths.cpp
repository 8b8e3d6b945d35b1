#include "kit/paths.h"

#include <unistd.h>

#include <cerrno>
#include <vector>

namespace zylsdk {
namespace {

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

int LastSeparator(const KString& path) {
  for (int i = path.GetLen() - 1; i >= 0; --i)
    if (IsSeparator(path[i])) return i;
  return -1;
}

// A path that only Windows can resolve: a drive letter ("C:") or a UNC share ("\\server").
bool IsWindowsAbsolute(const KString& path) {
  if (path.GetLen() >= 2 && path[1] == ':' && ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z')))
    return true;
  return path.GetLen() >= 2 && path[0] == '\\' && path[1] == '\\';
}

// The components of a path, without empty and "." components.
std::vector<KString> Components(const KString& path) {
  std::vector<KString> parts;
  int start = 0;
  for (int i = 0; i <= path.GetLen(); ++i) {
    if (i < path.GetLen() && !IsSeparator(path[i])) continue;
    KString part = path.Mid(start, i - start);
    if (!part.IsEmpty() && part != ".") parts.push_back(part);
    start = i + 1;
  }
  return parts;
}

}  // namespace

KString ExtractFileName(const KString& path, bool) { return path.Mid(LastSeparator(path) + 1); }

KString MakeFullPath(const KString& directory, const KString& name) {
  return directory.IsEmpty() ? name : directory + "/" + name;
}

KString GetRelativePath(const KString& path, const KString& directory) {
  if (IsWindowsAbsolute(path)) return directory;
  int separator = LastSeparator(path);
  KString folder = separator < 0 ? KString() : path.Left(separator);
  bool absolute = path.GetLen() > 0 && IsSeparator(path[0]);
  if (!absolute) return folder;
  if (directory.IsEmpty() || !IsSeparator(directory[0])) return directory;

  std::vector<KString> from = Components(directory);
  std::vector<KString> to = Components(folder);
  size_t common = 0;
  while (common < from.size() && common < to.size() && from[common] == to[common]) ++common;
  KString relative;
  for (size_t i = common; i < from.size(); ++i) relative += relative.IsEmpty() ? ".." : "/..";
  for (size_t i = common; i < to.size(); ++i) {
    if (!relative.IsEmpty()) relative += "/";
    relative += to[i];
  }
  return relative;
}

KString KGetCurrentDirectory() {
  std::vector<char> buffer(256);
  while (!getcwd(buffer.data(), buffer.size())) {
    if (errno != ERANGE || buffer.size() > (1u << 20)) return KString();
    buffer.resize(buffer.size() * 2);
  }
  return KString(buffer.data());
}

}  // namespace zylsdk
