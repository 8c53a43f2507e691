#pragma once

#include <simdjson.h>

#include <QString>

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

/// Decodes one line of a transcript at a time. Damaged text inside a string (bytes that are no UTF-8, half a surrogate
/// pair) is replaced, not fatal; a line that is no JSON object has no value. For one thread; a record holds until the
/// next one is decoded.
class LineDecoder {
 public:
  using Record = simdjson::dom::object;

  std::optional<Record> decode(std::string_view line);

 private:
  simdjson::dom::parser parser_;
  std::string repaired_;
};

/// The value below a chain of keys; none when one is missing or not an object.
std::optional<simdjson::dom::element> member(const LineDecoder::Record& record,
                                             std::initializer_list<std::string_view> keys);
/// The same when it is a string.
std::optional<QString> text(const LineDecoder::Record& record, std::initializer_list<std::string_view> keys);
/// The same, empty ones left out.
std::optional<QString> filledText(const LineDecoder::Record& record, std::initializer_list<std::string_view> keys);
