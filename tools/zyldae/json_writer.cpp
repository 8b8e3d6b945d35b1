#include "tools/zyldae/json_writer.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace zyldae {
namespace {

// Beyond this, the buffered text is handed to the stream.
constexpr size_t kBufferBytes = 1 << 16;

// Length of the valid UTF-8 sequence at `s[i]`, or 0 when the byte starts none.
size_t Utf8SequenceLength(const std::string& s, size_t i) {
  auto byte = [&](size_t k) { return static_cast<unsigned char>(s[k]); };
  unsigned char c = byte(i);
  size_t length;
  uint32_t minimum;
  if (c < 0x80) return 1;
  if ((c & 0xE0) == 0xC0) { length = 2; minimum = 0x80; }
  else if ((c & 0xF0) == 0xE0) { length = 3; minimum = 0x800; }
  else if ((c & 0xF8) == 0xF0) { length = 4; minimum = 0x10000; }
  else return 0;
  if (i + length > s.size()) return 0;
  uint32_t code = c & (0x7F >> length);
  for (size_t k = 1; k < length; ++k) {
    if ((byte(i + k) & 0xC0) != 0x80) return 0;
    code = (code << 6) | (byte(i + k) & 0x3F);
  }
  if (code < minimum || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return 0;
  return length;
}

// Tells `sink` the whole of `value`.
void Tell(JsonSink& sink, const Json& value) {
  switch (value.type()) {
    case Json::value_t::object:
      sink.BeginObject();
      for (auto it = value.begin(); it != value.end(); ++it) {
        sink.Key(it.key());
        Tell(sink, it.value());
      }
      sink.EndObject();
      return;
    case Json::value_t::array:
      sink.BeginArray(std::all_of(value.begin(), value.end(), [](const Json& v) { return v.is_number() || v.is_null(); }));
      for (const Json& item : value) Tell(sink, item);
      sink.EndArray();
      return;
    case Json::value_t::string: sink.String(value.get_ref<const std::string&>()); return;
    case Json::value_t::boolean: sink.Bool(value.get<bool>()); return;
    case Json::value_t::number_integer: sink.Integer(value.get<int64_t>()); return;
    // No dump value is an unsigned number beyond the signed range.
    case Json::value_t::number_unsigned: sink.Integer(static_cast<int64_t>(value.get<uint64_t>())); return;
    case Json::value_t::number_float: sink.Double(value.get<double>()); return;
    default: sink.Null(); return;
  }
}

}  // namespace

const char* NonFiniteText(double value) {
  if (std::isnan(value)) return "nan";
  return value > 0 ? "inf" : "-inf";
}

Json Number(double value) {
  if (!std::isfinite(value)) return NonFiniteText(value);
  return value;
}

void JsonStreamWriter::BeginObject() {
  BeginValue();
  mBuffer += '{';
  mOpen.push_back({true, false, 0});
}

void JsonStreamWriter::BeginArray(bool flat) {
  BeginValue();
  mBuffer += '[';
  mOpen.push_back({false, flat, 0});
}

void JsonStreamWriter::EndObject() {
  if (mOpen.back().count > 0) NewLine(mOpen.size() - 1);
  mBuffer += '}';
  mOpen.pop_back();
  EndValue();
}

void JsonStreamWriter::EndArray() {
  const Open& array = mOpen.back();
  if (array.count > 0 && !array.flat) NewLine(mOpen.size() - 1);
  mBuffer += ']';
  mOpen.pop_back();
  EndValue();
}

void JsonStreamWriter::Key(const std::string& key) {
  Open& object = mOpen.back();
  if (object.count++ > 0) mBuffer += ',';
  NewLine(mOpen.size());
  WriteText(key);
  mBuffer += mIndent > 0 ? ": " : ":";
}

void JsonStreamWriter::Null() {
  BeginValue();
  Append("null", 4);
  EndValue();
}

void JsonStreamWriter::Bool(bool value) {
  BeginValue();
  if (value) Append("true", 4);
  else Append("false", 5);
  EndValue();
}

void JsonStreamWriter::Integer(int64_t value) {
  BeginValue();
  char digits[24];
  Append(digits, static_cast<size_t>(std::to_chars(digits, digits + sizeof digits, value).ptr - digits));
  EndValue();
}

void JsonStreamWriter::Double(double value) {
  BeginValue();
  char digits[32];
  Append(digits, static_cast<size_t>(std::to_chars(digits, digits + sizeof digits, value).ptr - digits));
  EndValue();
}

void JsonStreamWriter::String(const std::string& value) {
  BeginValue();
  WriteText(value);
  EndValue();
}

void JsonStreamWriter::Flush() {
  mOut.write(mBuffer.data(), static_cast<std::streamsize>(mBuffer.size()));
  mBuffer.clear();
}

void JsonStreamWriter::BeginValue() {
  if (mOpen.empty() || mOpen.back().object) return;
  Open& array = mOpen.back();
  if (array.count++ > 0) mBuffer += array.flat && mIndent > 0 ? ", " : ",";
  if (!array.flat) NewLine(mOpen.size());
}

void JsonStreamWriter::EndValue() {
  if (mOpen.empty()) mBuffer += '\n';
  FlushWhenFull();
}

void JsonStreamWriter::NewLine(size_t level) {
  if (mIndent <= 0) return;
  mBuffer += '\n';
  mBuffer.append(static_cast<size_t>(mIndent) * level, ' ');
}

void JsonStreamWriter::WriteText(const std::string& s) {
  static const char* const kHex = "0123456789abcdef";
  mBuffer += '"';
  for (size_t i = 0; i < s.size();) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    size_t length = Utf8SequenceLength(s, i);
    if (length == 0 || c < 0x20) {
      switch (c) {
        case '\n': Append("\\n", 2); break;
        case '\r': Append("\\r", 2); break;
        case '\t': Append("\\t", 2); break;
        case '\b': Append("\\b", 2); break;
        case '\f': Append("\\f", 2); break;
        default: {
          const char escape[] = {'\\', 'u', '0', '0', kHex[c >> 4], kHex[c & 15]};
          Append(escape, sizeof escape);
        }
      }
      ++i;
      continue;
    }
    if (c == '"' || c == '\\') mBuffer += '\\';
    Append(s.data() + i, length);
    i += length;
  }
  mBuffer += '"';
}

void JsonStreamWriter::FlushWhenFull() {
  if (mBuffer.size() >= kBufferBytes) Flush();
}

void WriteJson(std::ostream& out, const Json& value, int indent) {
  JsonStreamWriter writer(out, indent);
  Tell(writer, value);
}

}  // namespace zyldae
