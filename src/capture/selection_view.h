#pragma once

#include <QImage>
#include <QWidget>

#include <optional>

#include "capture/size_label.h"

class CapturePill;

/// What an overlay shows: the screen dimmed, the dragged rectangle undimmed with its size, and the pill at the pointer.
class SelectionView final : public QWidget {
  Q_OBJECT

 public:
  struct Look {
    QString label;
    QString icon;
    /// The screen in native pixels; null: what is behind the window shows through.
    QImage picture;
    bool animated = true;
  };

  SelectionView(Look look, QWidget* parent);

  /// Puts the pill where the pointer is, in view coordinates.
  void followPointer(QPointF pointer);

 Q_SIGNALS:
  /// A drag wider and taller than 4, in view coordinates.
  void selected(const QRectF& rect);
  /// The other mouse button was clicked.
  void cancelled();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void endDrag(QPointF pointer);
  void setCurrentRect(std::optional<QRectF> rect);
  /// What looks different with a rectangle than without, but for its inside.
  QRegion decoration(const QRectF& rect) const;
  QRectF labelBox(const QRectF& rect) const;
  QString labelText(const QRectF& rect) const;
  QPointF held(const QMouseEvent& event) const;

  void paintGround(QPainter& painter) const;
  void paintSelection(QPainter& painter) const;

  QString pillLabel_;
  QString pillIcon_;
  QImage picture_;
  bool animated_;
  SizeLabel sizeLabel_;
  std::optional<QPointF> startPoint_;
  std::optional<QRectF> currentRect_;
  bool isCancelling_ = false;
  /// Made when it is first needed: on the screens that the pointer never enters it is not.
  CapturePill* pill_ = nullptr;
};
