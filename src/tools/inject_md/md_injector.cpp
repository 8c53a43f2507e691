#include "tools/inject_md/md_injector.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>
#include <vector>

#include "base/atomic_file.h"
#include "base/visible_text.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShownName = 80;

QStringList lines(const QString& text) {
  QStringList lines = text.split(u'\n');
  if (lines.last().isEmpty()) lines.removeLast();
  return lines;
}

QString counted(qsizetype lines) { return lines == 1 ? u"1 line"_s : u"%1 lines"_s.arg(lines); }

/// The length of the longest sequence of lines that both have in the same order.
qsizetype commonLines(const QStringList& before, const QStringList& after) {
  std::vector<qsizetype> row(static_cast<std::size_t>(after.size()) + 1);
  for (const QString& line : before) {
    qsizetype diagonal = 0;
    for (std::size_t column = 1; column < row.size(); ++column) {
      const bool isSame = line == after[static_cast<qsizetype>(column) - 1];
      const qsizetype best = isSame ? diagonal + 1 : std::max(row[column], row[column - 1]);
      diagonal = std::exchange(row[column], best);
    }
  }
  return row.back();
}

}  // namespace

QString LineChanges::description() const {
  if (added == 0 && removed == 0) return u"nothing would change"_s;
  QStringList parts;
  if (added > 0) parts.append(u"adds %1"_s.arg(counted(added)));
  if (removed > 0) parts.append(u"removes %1"_s.arg(counted(removed)));
  return parts.join(u", "_s);
}

LineChanges lineChanges(const QString& before, const QString& after) {
  const QStringList old = lines(before);
  const QStringList fresh = lines(after);
  const qsizetype common = commonLines(old, fresh);
  return {fresh.size() - common, old.size() - common};
}

QString InjectionError::description() const {
  return u"Couldn’t write %1: %2"_s.arg(visibleLine(fileName, kShownName), reason);
}

QString ExistingFile::description() const {
  return changes ? changes->description() : u"replaces a file of more than 1 MB"_s;
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
  QFile file(targetPath());
  if (!file.open(QFile::ReadOnly)) return {};
  const QByteArray before = file.read(kMaximumCompared + 1);
  if (before.size() > kMaximumCompared) return {};
  return {lineChanges(QString::fromUtf8(before), document_.contents)};
}

std::expected<void, InjectionError> MDInjector::write(Overwrite overwrite) const {
  const auto found = inspect();
  if (!found) return std::unexpected(found.error());
  if (*found && overwrite == Overwrite::no) return fault(u"a file of that name is already there"_s);
  const auto written = replaceFileAtomically(targetPath(), document_.contents.toUtf8());
  if (!written) return fault(written.error().reason);
  return {};
}
