#pragma once

#include <QByteArray>
#include <QList>

#include <optional>
#include <vector>

/// One part of a form, as a parser reads it that forgives nothing.
struct FormPart {
  QByteArray name;
  /// Null for a text field.
  QByteArray filename;
  QByteArray contentType;
  QByteArray content;

  bool operator==(const FormPart&) const = default;
};

/// Reads a form whose layout is exactly the one that services expect: CR LF at every line's end, the disposition and
/// then the type, nothing before the first boundary and nothing after the last. None for any other bytes.
class StrictForm {
 public:
  static std::optional<std::vector<FormPart>> parse(const QByteArray& contentType, const QByteArray& body) {
    StrictForm form(contentType, body);
    return form.read() ? std::optional(form.parts_) : std::nullopt;
  }

 private:
  StrictForm(const QByteArray& contentType, const QByteArray& body) : rest_(body) {
    constexpr QByteArrayView kType = "multipart/form-data; boundary=";
    if (contentType.startsWith(kType)) boundary_ = contentType.mid(kType.size());
  }

  bool read() {
    if (boundary_.isEmpty() || boundary_.size() > 70) return false;
    while (!takes("--" + boundary_ + "--\r\n"))
      if (!readPart()) return false;
    return rest_.isEmpty();
  }

  bool readPart() {
    FormPart part;
    if (!takes("--" + boundary_ + "\r\n") || !takes("Content-Disposition: form-data; name=\"")) return false;
    part.name = upTo("\"");
    if (takes("; filename=\"")) {
      part.filename = upTo("\"");
      if (!takes("\r\nContent-Type: ")) return false;
      part.contentType = upTo("\r\n");
      if (!takes("\r\n")) return false;
    } else if (!takes("\r\n\r\n")) {
      return false;
    }
    const qsizetype end = rest_.indexOf("\r\n--" + boundary_);
    if (end < 0) return false;
    part.content = rest_.left(end);
    rest_ = rest_.mid(end + 2);
    parts_.push_back(part);
    return true;
  }

  bool takes(const QByteArray& text) {
    if (!rest_.startsWith(text)) return false;
    rest_ = rest_.mid(text.size());
    return true;
  }

  QByteArray upTo(const QByteArray& end) {
    const qsizetype at = rest_.indexOf(end);
    const QByteArray text = at < 0 ? rest_ : rest_.left(at);
    rest_ = at < 0 ? QByteArray() : rest_.mid(at + end.size());
    return text;
  }

  QByteArray boundary_;
  QByteArray rest_;
  std::vector<FormPart> parts_;
};
