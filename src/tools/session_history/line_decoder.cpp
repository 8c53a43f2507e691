#include "tools/session_history/line_decoder.h"

namespace {

constexpr std::size_t kEscapeLength = 6;

bool isSurrogateEscape(std::string_view text, char first, char last) {
  if (text.size() < kEscapeLength || text[0] != '\\' || text[1] != 'u' || (text[2] | 0x20) != 'd') return false;
  const char third = static_cast<char>(text[3] | (text[3] >= 'A' ? 0x20 : 0));
  return third >= first && third <= last;
}

/// Replaces each half of a surrogate pair that stands alone, as "\ud83d" does in a text cut in its middle.
void replaceLoneSurrogates(std::string& json) {
  for (std::size_t at = json.find('\\'); at != std::string::npos; at = json.find('\\', at)) {
    const std::string_view rest = std::string_view(json).substr(at);
    const bool isHigh = isSurrogateEscape(rest, '8', 'b');
    if (isHigh && isSurrogateEscape(rest.substr(kEscapeLength), 'c', 'f')) {
      at += 2 * kEscapeLength;
    } else if (isHigh || isSurrogateEscape(rest, 'c', 'f')) {
      json.replace(at, kEscapeLength, "\\ufffd");
      at += kEscapeLength;
    } else {
      at += 2;
    }
  }
}

}  // namespace

std::optional<LineDecoder::Record> LineDecoder::decode(std::string_view line) {
  simdjson::dom::element element;
  simdjson::error_code error = parser_.parse(line.data(), line.size()).get(element);
  if (error == simdjson::UTF8_ERROR || error == simdjson::STRING_ERROR) {
    repaired_ = QString::fromUtf8(line.data(), static_cast<qsizetype>(line.size())).toStdString();
    replaceLoneSurrogates(repaired_);
    error = parser_.parse(repaired_).get(element);
  }
  Record record;
  if (error != simdjson::SUCCESS || element.get(record) != simdjson::SUCCESS) return std::nullopt;
  return record;
}

std::optional<simdjson::dom::element> member(const LineDecoder::Record& record,
                                             std::initializer_list<std::string_view> keys) {
  simdjson::dom::element value;
  LineDecoder::Record object = record;
  for (const std::string_view* key = keys.begin(); key != keys.end(); ++key) {
    if (key != keys.begin() && value.get(object) != simdjson::SUCCESS) return std::nullopt;
    if (object[*key].get(value) != simdjson::SUCCESS) return std::nullopt;
  }
  return value;
}

std::optional<QString> text(const LineDecoder::Record& record, std::initializer_list<std::string_view> keys) {
  const auto value = member(record, keys);
  std::string_view bytes;
  if (!value || value->get(bytes) != simdjson::SUCCESS) return std::nullopt;
  return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::optional<QString> filledText(const LineDecoder::Record& record, std::initializer_list<std::string_view> keys) {
  auto value = text(record, keys);
  return value && !value->isEmpty() ? std::move(value) : std::nullopt;
}
