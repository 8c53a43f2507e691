#pragma once

#include <QString>

/// What the panels of feedback and of suggestions say.
struct ReportTexts {
  QString title;
  QString subtitle;
  /// What snips are good for.
  QString snipHint;
  /// Once there are as many as go with one report.
  QString enoughSnips;
  QString sending;
  QString thanks;
  QString afterThanks;

  static ReportTexts feedback();
  static ReportTexts suggestion();
  /// On both.
  static QString privacy(const QString& systemName);
  static QString snipHelp();
  static QString removeSnipHelp();
  static QString retryHint();
};
