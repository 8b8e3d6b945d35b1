#pragma once
// Writes a JSON value as the dump writes it: numbers in their shortest round-trip form,
// non-finite numbers as the strings "nan", "inf" and "-inf", texts as UTF-8 with each byte that
// is not valid UTF-8 escaped as \u00XX. (The library's own writer can only reject or replace
// such bytes.)

#include <nlohmann/json.hpp>
#include <ostream>

namespace zyldae {

using Json = nlohmann::ordered_json;

// A number for the dump: a JSON number when finite, else its text.
Json Number(double value);
void WriteJson(std::ostream& out, const Json& value, int indent = 2);

}  // namespace zyldae
