#include "tools/zyldae/json_writer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace zyldae {
namespace {

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

void WriteString(std::ostream& out, const std::string& s) {
  static const char* const kHex = "0123456789abcdef";
  out << '"';
  for (size_t i = 0; i < s.size();) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    size_t length = Utf8SequenceLength(s, i);
    if (length == 0 || c < 0x20) {
      switch (c) {
        case '\n': out << "\\n"; break;
        case '\r': out << "\\r"; break;
        case '\t': out << "\\t"; break;
        case '\b': out << "\\b"; break;
        case '\f': out << "\\f"; break;
        default: out << "\\u00" << kHex[c >> 4] << kHex[c & 15];
      }
      ++i;
      continue;
    }
    if (c == '"' || c == '\\') out << '\\';
    out.write(s.data() + i, static_cast<std::streamsize>(length));
    i += length;
  }
  out << '"';
}

void WriteDouble(std::ostream& out, double value) {
  char buffer[32];
  std::to_chars_result result = std::to_chars(buffer, buffer + sizeof buffer, value);
  out.write(buffer, result.ptr - buffer);
}

void Write(std::ostream& out, const Json& value, int indent, int depth) {
  auto newline = [&](int level) {
    if (indent <= 0) return;
    out << '\n' << std::string(static_cast<size_t>(indent * level), ' ');
  };
  switch (value.type()) {
    case Json::value_t::object: {
      if (value.empty()) { out << "{}"; return; }
      out << '{';
      bool first = true;
      for (auto it = value.begin(); it != value.end(); ++it) {
        if (!first) out << ',';
        first = false;
        newline(depth + 1);
        WriteString(out, it.key());
        out << (indent > 0 ? ": " : ":");
        Write(out, it.value(), indent, depth + 1);
      }
      newline(depth);
      out << '}';
      return;
    }
    case Json::value_t::array: {
      if (value.empty()) { out << "[]"; return; }
      // Arrays of numbers stay on one line: vectors and matrices read best that way.
      bool flat = std::all_of(value.begin(), value.end(), [](const Json& v) { return v.is_number() || v.is_null(); });
      out << '[';
      bool first = true;
      for (const Json& item : value) {
        if (!first) out << (flat && indent > 0 ? ", " : ",");
        first = false;
        if (!flat) newline(depth + 1);
        Write(out, item, indent, depth + 1);
      }
      if (!flat) newline(depth);
      out << ']';
      return;
    }
    case Json::value_t::string: WriteString(out, value.get_ref<const std::string&>()); return;
    case Json::value_t::boolean: out << (value.get<bool>() ? "true" : "false"); return;
    case Json::value_t::number_integer: out << value.get<int64_t>(); return;
    case Json::value_t::number_unsigned: out << value.get<uint64_t>(); return;
    case Json::value_t::number_float: WriteDouble(out, value.get<double>()); return;
    default: out << "null"; return;
  }
}

}  // namespace

Json Number(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
  return value;
}

void WriteJson(std::ostream& out, const Json& value, int indent) {
  Write(out, value, indent, 0);
  out << '\n';
}

}  // namespace zyldae
