#pragma once
// A small memory of the names looked up last, in front of a table that hashes them. A
// document's element names and a scene's property names are few and come again and again, in
// the same order: comparing a name with the one last seen at a slot chosen by its length and its
// end characters costs less than hashing it.

#include <array>
#include <cstddef>
#include <string_view>

namespace zylsdk {

template <class T, size_t kSlots = 64>
class RecentNames {
 public:
  // What was last remembered for a name equal to `name`, or null.
  T* Find(std::string_view name) const {
    const Entry& entry = mEntries[SlotOf(name)];
    return entry.value && entry.name == name ? entry.value : nullptr;
  }
  // Remembers `value` for `name`, whose characters must stay where they are.
  void Remember(std::string_view name, T* value) { mEntries[SlotOf(name)] = {name, value}; }

 private:
  struct Entry {
    std::string_view name;
    T* value = nullptr;
  };
  static size_t SlotOf(std::string_view name) {
    if (name.empty()) return 0;
    return (name.size() * 31 + static_cast<unsigned char>(name.front()) * 7 + static_cast<unsigned char>(name.back())) %
           kSlots;
  }
  std::array<Entry, kSlots> mEntries{};
};

}  // namespace zylsdk
