#pragma once

#include <QLabel>

struct Theme;

/// A label in one of the theme's colours, also after the appearance has changed.
class TonedLabel : public QLabel {
  Q_OBJECT

 public:
  /// QColor Theme::*: &Theme::success, say.
  explicit TonedLabel(QColor Theme::* tone, const QString& text = {}, QWidget* parent = nullptr);

  void setTone(QColor Theme::* tone);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void colour();

  QColor Theme::* tone_;
};
