#include "service/http/part_head.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool isSame(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right, [](unsigned char a, unsigned char b) { return std::tolower(a) == b; });
}

bool isTokenCharacter(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return std::isalnum(byte) != 0 || std::string_view("!#$%&'*+-.^_`|~").contains(c);
}

/// "; name=": what follows the closing quote of a value that is not the last one.
bool beginsParameter(std::string_view rest) {
  if (!rest.starts_with(';')) return false;
  rest = trimmed(rest.substr(1));
  const auto name = std::ranges::find_if_not(rest, isTokenCharacter);
  return name != rest.begin() && name != rest.end() && *name == '=';
}

bool closesValue(std::string_view text, std::size_t quote) {
  const std::string_view rest = trimmed(text.substr(quote + 1));
  if (rest.empty()) return true;
  return beginsParameter(rest) && (quote == 0 || text[quote - 1] != '\\');
}

/// Quotes within a name come as they are, behind a backslash, or as browsers spell them.
QByteArray unescaped(std::string_view value) {
  QByteArray text(value.data(), static_cast<qsizetype>(value.size()));
  constexpr std::array kEscapes = {std::pair{"\\\"", "\""}, std::pair{"%22", "\""}, std::pair{"%0D", "\r"},
                                   std::pair{"%0A", "\n"}};
  for (const auto& [escape, character] : kEscapes) text.replace(escape, character);
  return text;
}

/// Takes the value behind a quote and what closes it off `text`.
std::optional<QByteArray> takeQuoted(std::string_view& text) {
  for (auto quote = text.find('"'); quote != std::string_view::npos; quote = text.find('"', quote + 1)) {
    if (!closesValue(text, quote)) continue;
    QByteArray value = unescaped(text.substr(0, quote));
    text = trimmed(text.substr(quote + 1));
    return value;
  }
  return {};
}

std::optional<QByteArray> takeValue(std::string_view& text) {
  if (text.starts_with('"')) {
    text.remove_prefix(1);
    return takeQuoted(text);
  }
  const auto end = std::min(text.find(';'), text.size());
  const std::string_view value = trimmed(text.substr(0, end));
  text = text.substr(end);
  if (value.empty()) return {};
  return QByteArray(value.data(), static_cast<qsizetype>(value.size()));
}

/// The encoded form of a name, which wins over the plain one.
std::optional<QByteArray> decodedName(const QByteArray& value) {
  constexpr QByteArrayView kPrefix = "UTF-8''";
  if (value.first(std::min(value.size(), kPrefix.size())).compare(kPrefix, Qt::CaseInsensitive) != 0) return {};
  return QByteArray::fromPercentEncoding(value.mid(kPrefix.size()));
}

bool readParameters(std::string_view text, PartHead& head) {
  std::optional<QByteArray> encoded;
  bool isNamed = false;
  while (!text.empty()) {
    if (!beginsParameter(text)) return false;
    text = trimmed(text.substr(1));
    const auto equals = text.find('=');
    const std::string_view name = text.substr(0, equals);
    text = text.substr(equals + 1);
    const auto value = takeValue(text);
    if (!value) return false;
    if (isSame(name, "name")) {
      if (std::exchange(isNamed, true)) return false;
      head.name = *value;
    } else if (isSame(name, "filename")) {
      head.fileName = *value;
    } else if (isSame(name, "filename*")) {
      encoded = decodedName(*value);
    }
  }
  if (encoded) head.fileName = encoded;
  return isNamed;
}

bool readDisposition(std::string_view value, PartHead& head) {
  constexpr std::string_view kForm = "form-data";
  if (!isSame(value.substr(0, kForm.size()), kForm)) return false;
  return readParameters(trimmed(value.substr(kForm.size())), head);
}

/// False: this is no header line, or a disposition that is not a form's.
bool readLine(std::string_view line, PartHead& head, bool& isDisposed) {
  const auto colon = line.find(':');
  if (colon == 0 || colon == std::string_view::npos) return false;
  const std::string_view name = line.substr(0, colon);
  if (!std::ranges::all_of(name, isTokenCharacter)) return false;
  const std::string_view value = trimmed(line.substr(colon + 1));
  if (isSame(name, "content-type")) head.type = QByteArray(value.data(), static_cast<qsizetype>(value.size()));
  if (!isSame(name, "content-disposition")) return true;
  return !std::exchange(isDisposed, true) && readDisposition(value, head);
}

}  // namespace

std::optional<PartHead> readPartHead(std::string_view lines) {
  PartHead head;
  bool isDisposed = false;
  if (lines.contains('\0')) return {};
  while (!lines.empty()) {
    const auto end = std::min(lines.find("\r\n"), lines.size());
    if (!readLine(lines.substr(0, end), head, isDisposed)) return {};
    lines.remove_prefix(std::min(end + 2, lines.size()));
  }
  if (!isDisposed) return {};
  return head;
}
