#pragma once

#include <QJsonObject>
#include <QString>

/// One line of the doctor's report.
struct Finding {
  QString subject;
  bool isFine = true;
  QString text;
  /// What scripts get beside it.
  QJsonObject details = {};
};
