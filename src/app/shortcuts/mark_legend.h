#pragma once

#include <QWidget>

/// What the marks on the drawn keys mean: a line of small samples.
class MarkLegend : public QWidget {
  Q_OBJECT

 public:
  explicit MarkLegend(QWidget* parent = nullptr);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};
