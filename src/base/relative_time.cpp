#include "base/relative_time.h"

#include <QLocale>

using namespace Qt::StringLiterals;

QString relativeTime(const QDateTime& then, const QDateTime& now) {
  constexpr qint64 kMinute = 60;
  constexpr qint64 kHour = 60 * kMinute;
  constexpr qint64 kFourWeeks = 28;
  const qint64 seconds = then.secsTo(now);
  if (seconds < kMinute) return u"now"_s;
  if (seconds < kHour) return u"%1 min ago"_s.arg(seconds / kMinute);
  const qint64 days = then.date().daysTo(now.date());
  if (days == 0) return u"%1 h ago"_s.arg(seconds / kHour);
  if (days == 1) return u"yesterday"_s;
  if (days < kFourWeeks) return u"%1 days ago"_s.arg(days);
  return QLocale().toString(then.date(), QLocale::ShortFormat);
}
