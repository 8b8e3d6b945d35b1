#pragma once
// Writes JSON as the dump writes it: two spaces of indentation, arrays of numbers (and nulls)
// on one line, numbers in their shortest round-trip form, non-finite numbers as the strings
// "nan", "inf" and "-inf", texts as UTF-8 with each byte that is not valid UTF-8 escaped as
// \u00XX. (The library's own writer can only reject or replace such bytes.)

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "tools/zyldae/json_sink.h"

namespace zyldae {

using Json = nlohmann::ordered_json;

// The text the dump writes for a number that is not finite: "nan", "inf" or "-inf".
const char* NonFiniteText(double value);
// A number for the dump: a JSON number when finite, else its text.
Json Number(double value);

// Writes each value as it is told, straight to `out`, and a line end after each whole value.
// Text is gathered in a buffer and handed to `out` in large pieces; Flush, or the destructor,
// hands over the rest.
class JsonStreamWriter : public JsonSink {
 public:
  explicit JsonStreamWriter(std::ostream& out, int indent = 2) : mOut(out), mIndent(indent) {}
  ~JsonStreamWriter() override { Flush(); }
  JsonStreamWriter(const JsonStreamWriter&) = delete;
  JsonStreamWriter& operator=(const JsonStreamWriter&) = delete;

  void BeginObject() override;
  void EndObject() override;
  void BeginArray(bool flat) override;
  void EndArray() override;
  void Key(const std::string& key) override;
  void Null() override;
  void Bool(bool value) override;
  void Integer(int64_t value) override;
  void Double(double value) override;
  void String(const std::string& value) override;

  void Flush();

 private:
  struct Open {
    bool object;
    bool flat;
    int count;
  };
  // Starts a value: the separator and line break an array item needs (an object's member
  // had them written by Key).
  void BeginValue();
  // Ends a value; a whole document gets its line end.
  void EndValue();
  void NewLine(size_t level);
  void Append(const char* text, size_t length) { mBuffer.append(text, length); }
  void WriteText(const std::string& text);
  void FlushWhenFull();

  std::ostream& mOut;
  int mIndent;
  std::string mBuffer;
  std::vector<Open> mOpen;
};

// Writes a whole value and a line end.
void WriteJson(std::ostream& out, const Json& value, int indent = 2);

}  // namespace zyldae
