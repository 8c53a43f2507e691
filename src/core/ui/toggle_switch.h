#pragma once

#include <QCheckBox>

/// A check box drawn as a switch; to screen readers and the keyboard it is a check box.
class ToggleSwitch : public QCheckBox {
  Q_OBJECT

 public:
  /// Room around the track for the focus ring; what stands in line with a switch is in line with its track.
  static constexpr int kRing = 3;

  /// `name`: what it switches, for screen readers.
  explicit ToggleSwitch(const QString& name, QWidget* parent = nullptr);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& position) const override;
};
