#pragma once

#include <QWidget>

#include "core/ui/icon_tile.h"

class QLabel;
class QPushButton;
class QVBoxLayout;

/// One step of the first run: a sign, a title, a sentence, and what stands below them.
class OnboardingPage : public QWidget {
  Q_OBJECT

 public:
  /// The step is about to be shown.
  virtual void arrive() {}
  /// Where the keyboard is on arrival; null for the button that Return presses.
  virtual QWidget* firstFocus() const { return nullptr; }
  /// What Return presses when no button has the keyboard; null for the window's own button.
  virtual QPushButton* defaultButton() const { return nullptr; }

 protected:
  /// A sign without a symbol is the logo.
  explicit OnboardingPage(const IconTile& sign, const QString& title = {}, const QString& text = {});

  void setTexts(const QString& title, const QString& text);
  QVBoxLayout& column() { return *column_; }

 private:
  QVBoxLayout* column_;
  QLabel* title_;
  QLabel* text_;
};
