#pragma once
// A JSON document told one value at a time, in order. The dump walks a read once and tells
// what it finds to a sink, which either writes the text straight to a stream
// (JsonStreamWriter) or builds a JSON value in memory (JsonValueBuilder).

#include <cstdint>
#include <string>

namespace zyldae {

class JsonSink {
 public:
  virtual ~JsonSink() = default;

  virtual void BeginObject() = 0;
  virtual void EndObject() = 0;
  // `flat`: every item will be a number or null; the writer keeps such an array on one line.
  virtual void BeginArray(bool flat) = 0;
  virtual void EndArray() = 0;
  // Names the next value of the open object.
  virtual void Key(const std::string& key) = 0;

  virtual void Null() = 0;
  virtual void Bool(bool value) = 0;
  virtual void Integer(int64_t value) = 0;
  // A finite number (the dump writes the others as texts).
  virtual void Double(double value) = 0;
  virtual void String(const std::string& value) = 0;
};

}  // namespace zyldae
