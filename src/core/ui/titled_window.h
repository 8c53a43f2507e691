#pragma once

#include <QWidget>

/// An ordinary window with a title bar: Escape and the system's "close" close it, and it opens in the middle of the
/// screen that the user is on. It keeps neither place nor size.
class TitledWindow : public QWidget {
  Q_OBJECT

 public:
  explicit TitledWindow(const QString& title);

  /// Shows the window, centred when it was closed, and brings it to the front.
  virtual void open();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};
