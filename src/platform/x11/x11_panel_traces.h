#pragma once

#include <QObject>
#include <QRect>

#include <chrono>
#include <vector>

class QWindow;

/// Where panels of ours have just been: what is behind them is painted anew by other programs, in their own time, and a
/// compositor may fade them out. Main thread only.
class X11PanelTraces : public QObject {
 public:
  using Clock = std::chrono::steady_clock;

  /// In pixels of the root window.
  struct Trace {
    QRect pixels;
    Clock::time_point gone;
  };

  /// Notes where the panel is whenever it is hidden; once for each panel is enough, more does no harm.
  void follow(QWindow& panel);
  /// Those gone less than `age` ago, a second at the most; forgets the others.
  std::vector<Trace> youngerThan(std::chrono::milliseconds age);

 private:
  void note(const QWindow& panel);

  std::vector<Trace> traces_;
};
