#include "kit/property_names.h"

namespace zylsdk {

const PropertyName* PropertyNames::Intern(std::string_view name) {
  if (const PropertyName* recent = mRecent.Find(name)) return recent;
  auto found = mNames.find(name);
  const PropertyName* kept = found != mNames.end() ? found->second.get() : nullptr;
  if (!kept) {
    auto entry = std::make_unique<PropertyName>(PropertyName{KString(name.data(), name.size()), Hash(name)});
    kept = entry.get();
    mNames.emplace(std::string_view(kept->text.Std()), std::move(entry));
  }
  mRecent.Remember(std::string_view(kept->text.Std()), kept);
  return kept;
}

}  // namespace zylsdk
