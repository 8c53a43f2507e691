#include "app/update_notice.h"

#include <QSettings>

using namespace Qt::StringLiterals;

std::optional<QString> takeUpdatedFrom(QSettings& defaults, const QString& currentVersion) {
  const QString key = u"updates.lastVersion"_s;
  const QString last = defaults.value(key).toString();
  if (last == currentVersion) return std::nullopt;
  defaults.setValue(key, currentVersion);
  return last.isEmpty() ? std::nullopt : std::optional(last);
}
