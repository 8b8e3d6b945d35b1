#pragma once
// The names of a manager's properties, each kept once. A large scene's materials hold hundreds
// of thousands of properties under a few dozen names: a property points at its name here
// instead of holding a copy of it (and, for a name of more than 15 characters, an allocation).

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "kit/kstring.h"
#include "kit/recent_names.h"

namespace zylsdk {

// A name kept once, with its hash, so that tables of properties do not hash it again.
struct PropertyName {
  KString text;
  uint32_t hash;
};

class PropertyNames {
 public:
  // The entry of `name`, made at its first use; it lives as long as this pool.
  const PropertyName* Intern(std::string_view name);
  // The hash every entry holds: that of a name's characters.
  static uint32_t Hash(std::string_view name) { return static_cast<uint32_t>(std::hash<std::string_view>()(name)); }

 private:
  // Keyed by a view of the entry's own text, which does not move: each entry is allocated apart.
  std::unordered_map<std::string_view, std::unique_ptr<PropertyName>> mNames;
  // An object's properties are added under the same names in the same order as the last one's.
  RecentNames<const PropertyName> mRecent;
};

}  // namespace zylsdk
