#include "app/updates/update_notice.h"

#include <QSettings>

#include <utility>

using namespace Qt::StringLiterals;

bool UpdateNotice::prepare(bool isBusy) {
  const QString key = u"updates.lastVersion"_s;
  const QString last = defaults_.value(key).toString();
  if (last == running_ || (isBusy && !last.isEmpty())) return false;
  defaults_.setValue(key, running_);
  if (last.isEmpty()) return false;
  earlier_ = last;
  return true;
}

std::optional<QString> UpdateNotice::takeEarlier() { return std::exchange(earlier_, std::nullopt); }
