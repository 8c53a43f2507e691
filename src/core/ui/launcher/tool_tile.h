#pragma once

#include <QAbstractButton>
#include <QVariantAnimation>

/// What one tile of the launcher shows.
struct ToolTileFace {
  QString id;
  QString name;
  QString icon;
  QString summary;
  /// Key caps of the shortcut, and the shortcut in words.
  QStringList caps;
  QString spelled;
  /// Place on the page, 1 to 9; 0 hides the badge.
  int digit = 0;
  bool isSelected = false;
  bool isPinned = false;
  bool isArranging = false;
  bool isPulsing = false;
  /// Why the tool cannot be started; empty when it can. The symbol marks such a tile.
  QString obstacle = {};
  QString obstacleSymbol = {};

  bool operator==(const ToolTileFace&) const = default;
};

/// One tool in the launcher's grid: a button, and in arrange mode a piece that the pointer can carry. It paints its
/// face and decides nothing. Keys never go to it; assistive technology sees the highlighted tile as the focused one.
class ToolTile : public QAbstractButton {
  Q_OBJECT

 public:
  static constexpr QSize kSize{168, 112};
  static constexpr int kRadius = 12;

  explicit ToolTile(QWidget* parent);

  const ToolTileFace& face() const { return face_; }
  /// `animated`: a pulse moves; otherwise it only shows.
  void setFace(const ToolTileFace& face, bool animated);

 Q_SIGNALS:
  /// The pointer has moved over the tile.
  void pointed(QPoint globalPosition);
  void lifted(QPoint grip);
  void carried(QPoint globalPosition);
  void dropped();
  /// The pin in the tile's corner was clicked.
  void pinClicked();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void describe();
  void paintGround(QPainter& painter) const;
  void paintMarks(QPainter& painter) const;
  void paintPin(QPainter& painter, const QRectF& mark) const;
  bool isPinAt(QPointF position) const;
  void setPinPointedAt(bool pointedAt);
  void paintBody(QPainter& painter) const;

  ToolTileFace face_;
  bool isLifted_ = false;
  bool isPinPointedAt_ = false;
  bool isPinPressed_ = false;
  QVariantAnimation pulse_;
};
