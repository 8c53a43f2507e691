#pragma once

#include <QLabel>
#include <QProgressBar>

#include "services/usage_meter.h"

/// A slim bar, filled in proportion; a progress bar to screen readers.
class MeterBar final : public QProgressBar {
  Q_OBJECT

 public:
  explicit MeterBar(QWidget* parent = nullptr);

  void setMeter(const UsageMeter& meter);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double fraction_ = 0;
  bool isUsedUp_ = false;
};

/// One counter: its label and counts, the bar, and what is left.
class MeterView final : public QWidget {
  Q_OBJECT

 public:
  explicit MeterView(QWidget* parent = nullptr);

  void setMeter(const UsageMeter& meter);

 private:
  QLabel* label_;
  QLabel* counts_;
  MeterBar* bar_;
  QLabel* remaining_;
};
