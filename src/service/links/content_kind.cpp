#include "service/links/content_kind.h"

#include <QList>
#include <QStringConverter>

#include <algorithm>
#include <array>
#include <cctype>

using namespace Qt::StringLiterals;

namespace {

struct Signature {
  qsizetype offset;
  QByteArrayView bytes;
  QByteArrayView type;
};

/// From the formats' definitions.
const std::array kPictures = {
    Signature{0, "\x89PNG\r\n\x1a\n", "image/png"},
    Signature{0, "\xff\xd8\xff", "image/jpeg"},
    Signature{0, "GIF87a", "image/gif"},
    Signature{0, "GIF89a", "image/gif"},
    Signature{8, "WEBPVP8", "image/webp"},
    Signature{4, "ftypavif", "image/avif"},
};

/// Text to look at, but meant for a program.
constexpr std::array<QByteArrayView, 4> kSaved = {"application/pdf", "application/postscript", "application/rtf",
                                                  "text/rtf"};
constexpr qsizetype kLongestType = 100;
constexpr qsizetype kLongestName = 200;

bool isType(const QByteArray& text) {
  const auto isPart = [](QByteArrayView part) {
    return !part.isEmpty() && std::ranges::all_of(part, [](char c) {
      return std::isalnum(static_cast<unsigned char>(c)) != 0 || std::string_view("!#$&^_.+-").contains(c);
    });
  };
  const auto slash = text.indexOf('/');
  return text.size() <= kLongestType && slash > 0 && isPart(QByteArrayView(text).first(slash)) &&
         isPart(QByteArrayView(text).sliced(slash + 1));
}

bool isText(const QByteArray& beginning) {
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QString text = decoder(beginning);
  // A character that is cut by the end of the beginning is none that is wrong.
  return !decoder.hasError() && std::ranges::all_of(text, [](QChar c) {
    return c.category() != QChar::Other_Control || QStringLiteral("\t\n\r\f\x1b").contains(c);
  });
}

bool isHidden(QChar character) {
  switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
      return true;
    default:
      return false;
  }
}

}  // namespace

ContentKind ContentKind::of(const QByteArray& declared, const QByteArray& beginning) {
  for (const auto& [offset, bytes, type] : kPictures)
    if (beginning.mid(offset, bytes.size()) == bytes) return {type.toByteArray(), true};
  const QByteArray wanted = declared.split(';').front().trimmed().toLower();
  const bool isKnown = isType(wanted);
  const bool isSaved = std::ranges::find(kSaved, wanted) != kSaved.end();
  if (isText(beginning) && !isSaved && !beginning.isEmpty()) {
    // Served so that no script in it runs.
    if (wanted == "image/svg+xml") return {wanted, true};
    return {"text/plain; charset=utf-8", true};
  }
  // A picture by name only, or a page that is none: nothing that a browser should try.
  const bool isClaimed = wanted.startsWith("image/") || wanted.startsWith("text/");
  return {isKnown && !isClaimed ? wanted : QByteArray("application/octet-stream"), false};
}

QString safeFileName(const QByteArray& sent) {
  QString name = QString::fromUtf8(sent);
  name = name.mid(std::max(name.lastIndexOf(u'/'), name.lastIndexOf(u'\\')) + 1);
  name.removeIf(isHidden);
  name = name.trimmed();
  if (name.size() > kLongestName) {
    // The end tells what it is.
    const qsizetype suffix = std::min<qsizetype>(name.size() - name.lastIndexOf(u'.'), 20);
    name = name.first(kLongestName - suffix) + name.last(suffix);
  }
  return name.isEmpty() || name == "."_L1 || name == ".."_L1 ? u"file"_s : name;
}
