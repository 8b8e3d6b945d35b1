#pragma once
// A sink that builds the JSON value it is told, for callers that want the dump as a value
// rather than as text.

#include <string>
#include <vector>

#include "tools/zyldae/json_writer.h"

namespace zyldae {

class JsonValueBuilder : public JsonSink {
 public:
  void BeginObject() override { mOpen.push_back(Place(Json::object())); }
  void EndObject() override { mOpen.pop_back(); }
  void BeginArray(bool) override { mOpen.push_back(Place(Json::array())); }
  void EndArray() override { mOpen.pop_back(); }
  void Key(const std::string& key) override { mKey = key; }
  void Null() override { Place(nullptr); }
  void Bool(bool value) override { Place(value); }
  void Integer(int64_t value) override { Place(value); }
  void Double(double value) override { Place(value); }
  void String(const std::string& value) override { Place(value); }

  // The value told so far.
  Json& Value() { return mValue; }

 private:
  // Puts `value` where the next value goes and returns where it now is.
  Json* Place(Json value);

  Json mValue;
  // The objects and arrays not yet ended, innermost last. Only the innermost one changes, so
  // the places of the others stay put.
  std::vector<Json*> mOpen;
  std::string mKey;
};

}  // namespace zyldae
