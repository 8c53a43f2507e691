#pragma once

#include <QPointF>
#include <QSizeF>
#include <QStringList>
#include <QWidget>

class QPainter;
struct Theme;

/// What a row of key caps stands on.
enum class KeyCapGround { card, selection };

/// A row of key caps, "⌃ ⌥ U", 20 pixels high.
struct KeyCapRow {
  static constexpr int kHeight = 20;

  QStringList caps;

  QSizeF size() const;
  void paint(QPainter& painter, const QPointF& topLeft, const Theme& theme,
             KeyCapGround ground = KeyCapGround::card) const;
};

/// A row of key caps as a widget, read as the keys' names.
class KeyCaps : public QWidget {
  Q_OBJECT

 public:
  explicit KeyCaps(const QStringList& caps, QWidget* parent = nullptr);
  void setCaps(const QStringList& caps);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  KeyCapRow row_;
};
