#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

/// The text beside a selection that says how large it is. All digits take the same room, so that it does not tremble
/// while the selection grows.
class SizeLabel {
 public:
  SizeLabel();

  QSizeF textSize(const QString& text) const;
  /// The dark box, and the text in its middle.
  void paint(QPainter& painter, const QRectF& box, const QString& text) const;

 private:
  double advance(QChar character) const;

  QFont font_;
  double digit_;
};
