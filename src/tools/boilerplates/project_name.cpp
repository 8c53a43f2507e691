#include "tools/boilerplates/project_name.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// What every common file system takes, in bytes.
constexpr qsizetype kLongestName = 255;

/// Line breaks that are no control characters count as well.
bool isControl(QChar character) {
  const QChar::Category category = character.category();
  return category == QChar::Other_Control || category == QChar::Separator_Line ||
         category == QChar::Separator_Paragraph;
}

}  // namespace

QString projectNameProblem(const QString& name) {
  if (name.trimmed().isEmpty()) return u"Type a name for the project"_s;
  if (name == "."_L1 || name == ".."_L1) return u"“%1” cannot be a project’s name"_s.arg(name);
  // Every program would take it for an option.
  if (name.startsWith(u'-')) return u"A name cannot begin with a dash"_s;
  if (name.contains(u'/')) return u"A name cannot contain a slash"_s;
  if (std::ranges::any_of(name, isControl)) return u"A name cannot contain control characters"_s;
  if (!name.isValidUtf16()) return u"A name cannot contain half a character"_s;
  if (name.trimmed() != name) return u"A name cannot begin or end with a space"_s;
  if (QFile::encodeName(name).size() > kLongestName) return u"The name is too long"_s;
  return {};
}
