#pragma once

#include <QGuiApplication>
#include <QTimer>
#include <QWidget>

#include <cstdint>
#include <functional>

/// Follows which modifier keys are held while `window` is the active one. The keys are asked for, not counted: a grab
/// of another program swallows releases, and a window that is left by Alt+Tab never sees them.
class ModifierWatch : public QObject {
  Q_OBJECT

 public:
  using Query = std::function<Qt::KeyboardModifiers()>;

  explicit ModifierWatch(QWidget& window, Query query = QGuiApplication::queryKeyboardModifiers);

  bool isRunning() const { return running_; }
  /// Nothing is held for those who listen from now on, until the window becomes active again.
  void stop();

 Q_SIGNALS:
  /// Carbon bits.
  void changed(std::uint32_t held);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void start();
  void look();
  void report(std::uint32_t held);

  QWidget& window_;
  Query query_;
  QTimer again_;
  std::uint32_t held_ = 0;
  bool running_ = false;
};
