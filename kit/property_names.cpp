#include "kit/property_names.h"

namespace zylsdk {

const PropertyName* PropertyNames::Intern(std::string_view name) {
  auto found = mNames.find(name);
  if (found != mNames.end()) return found->second.get();
  auto entry = std::make_unique<PropertyName>(PropertyName{KString(name.data(), name.size()), Hash(name)});
  const PropertyName* kept = entry.get();
  mNames.emplace(std::string_view(kept->text.Std()), std::move(entry));
  return kept;
}

}  // namespace zylsdk
