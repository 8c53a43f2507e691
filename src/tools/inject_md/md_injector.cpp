#include "tools/inject_md/md_injector.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <utility>

#include "base/atomic_file.h"
#include "base/regular_file.h"
#include "base/visible_text.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShownName = 80;

/// None for bytes that are no text.
std::optional<QString> decoded(const QByteArray& bytes) {
  // A byte order mark is a change as well: it is kept.
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
  QString text = decoder.decode(bytes);
  const bool isText = text.toUtf8() == bytes && !text.contains(QChar::Null);
  return isText ? std::optional(std::move(text)) : std::nullopt;
}

}  // namespace

QString InjectionError::description() const {
  return u"Couldn’t write %1: %2"_s.arg(visibleLine(fileName, kShownName), reason);
}

MDInjector::MDInjector(MDDocument document, QString folder)
    : document_(std::move(document)), folder_(std::move(folder)) {}

QString MDInjector::targetPath() const { return QDir(folder_).absoluteFilePath(document_.fileName); }

std::unexpected<InjectionError> MDInjector::fault(const QString& reason) const {
  return std::unexpected(InjectionError{document_.fileName, reason});
}

std::expected<std::optional<ExistingFile>, InjectionError> MDInjector::inspect() const {
  if (const QString wrong = fileNameFault(document_.fileName); !wrong.isEmpty())
    return fault(u"the file name %1"_s.arg(wrong));
  if (!QFileInfo(folder_).isDir()) return fault(u"the folder is not there"_s);
  const QFileInfo target(targetPath());
  if (!target.exists()) {
    if (target.isSymLink()) return fault(u"it is a link that leads nowhere"_s);
    return std::nullopt;
  }
  if (target.isDir()) return fault(u"there is a folder of that name"_s);
  if (!target.isFile()) return fault(u"what has that name is not a file"_s);
  return compare();
}

ExistingFile MDInjector::compare() const {
  const auto file = openRegularFile(QFileInfo(targetPath()).canonicalFilePath());
  if (!file) return {u"replaces a file that cannot be read"_s, {}};
  const QByteArray before = (*file)->read(kMaximumCompared + 1);
  if (before.size() > kMaximumCompared) return {u"replaces a file of more than 1 MB"_s, {}};
  const auto text = decoded(before);
  if (!text) return {u"replaces a file that is not text"_s, {}};
  TextDiff diff = textDiff(*text, document_.contents);
  return {diff.description(), std::move(diff.lines)};
}

std::expected<void, InjectionError> MDInjector::write(Overwrite overwrite) const {
  const auto found = inspect();
  if (!found) return std::unexpected(found.error());
  if (*found && overwrite == Overwrite::no) return fault(u"a file of that name is already there"_s);
  const auto written = replaceFileAtomically(targetPath(), document_.contents.toUtf8());
  if (!written) return fault(written.error().reason);
  return {};
}
