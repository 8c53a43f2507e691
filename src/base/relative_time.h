#pragma once

#include <QDateTime>
#include <QString>

/// How long ago `then` was, as lists say it: "now", "5 min ago", "3 h ago", "yesterday", "4 days ago", and the date
/// from four weeks on. A time in the future, by a clock set back, is "now". Days are those of the local calendar.
QString relativeTime(const QDateTime& then, const QDateTime& now);
