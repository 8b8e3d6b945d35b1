#include "tools/zyldae/json_value_builder.h"

namespace zyldae {

Json* JsonValueBuilder::Place(Json value) {
  if (mOpen.empty()) {
    mValue = std::move(value);
    return &mValue;
  }
  Json& open = *mOpen.back();
  if (open.is_array()) {
    open.push_back(std::move(value));
    return &open.back();
  }
  Json& member = open[mKey];
  member = std::move(value);
  return &member;
}

}  // namespace zyldae
