// Times a rectangle of the screen from grabbing to PNG inside one process and prints JSON, in milliseconds.
// usage: capture_region <runs>; the whole of the primary screen, which the display makes as large as wanted.

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

#include "capture/screen_capturer.h"
#include "platform/platform.h"

namespace {

double median(std::vector<double> values) {
  std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
  return values[values.size() / 2];
}

struct Runs {
  ScreenCapturer& capturer;
  Job job = Job::start();
  std::size_t wanted;
  QElapsedTimer clock{};
  std::vector<double> total{};
  std::vector<double> grab{};
  qsizetype bytes = 0;

  double taken() const { return static_cast<double>(clock.nsecsElapsed()) / 1e6; }

  void grabNext() {
    clock.start();
    capturer.takePicture(*QGuiApplication::primaryScreen(), job, [this](const auto& picture) {
      if (!picture) return QCoreApplication::exit(1);
      grab.push_back(taken());
      grab.size() < wanted ? grabNext() : captureNext();
    });
  }
  void captureNext() {
    clock.start();
    const QScreen& screen = *QGuiApplication::primaryScreen();
    capturer.capturePNG(screen.geometry(), screen, {}, job, [this](const auto& png) {
      if (!png) return QCoreApplication::exit(1);
      total.push_back(taken());
      bytes = png->size();
      total.size() < wanted ? captureNext() : QCoreApplication::quit();
    });
  }
};

}  // namespace

int main(int argc, char** argv) {
  QGuiApplication app(argc, argv);
  if (argc != 2) return 2;
  const Platform platform = makePlatform();
  ScreenCapturer capturer(*platform.screenGrabber);
  Runs runs{.capturer = capturer, .wanted = std::strtoul(argv[1], nullptr, 10)};
  runs.grabNext();
  if (QCoreApplication::exec() != 0) return 1;
  const QSize size = QGuiApplication::primaryScreen()->size() * QGuiApplication::primaryScreen()->devicePixelRatio();
  std::printf(R"({"width": %d, "height": %d, "total": %.1f, "grab": %.1f, "bytes": %lld})"
              "\n",
              size.width(), size.height(), median(runs.total), median(runs.grab), static_cast<long long>(runs.bytes));
  return 0;
}
