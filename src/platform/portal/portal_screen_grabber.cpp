#include "platform/portal/portal_screen_grabber.h"

#include <QDateTime>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QScreen>
#include <QTimer>
#include <QUrl>

#include <cmath>

#include "base/background.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Compositors need a moment to show what a panel of ours has covered, longer where they fade it.
constexpr auto kUntilPanelsAreGone = 250ms;
constexpr qint64 kLargestFile = 256'000'000;
constexpr qint64 kMostPixels = 200'000'000;
/// Clocks of file systems are a little behind.
constexpr qint64 kClockDifferenceMs = 2000;

ScreenCaptureError error(const QString& reason) { return {reason}; }

/// Of this moment, so that it can be nothing of the user's that somebody names to us.
bool isFresh(const QFileInfo& file, const QDateTime& asked) {
  return file.isFile() && !file.isSymLink() && file.lastModified() >= asked.addMSecs(-kClockDifferenceMs);
}

std::expected<QImage, ScreenCaptureError> readPicture(const QString& path) {
  if (QFileInfo(path).size() > kLargestFile) return std::unexpected(error(u"The picture's file is too large"_s));
  QImageReader reader(path);
  reader.setDecideFormatFromContent(true);
  const QSize size = reader.size();
  if (!size.isValid() || qint64{size.width()} * size.height() > kMostPixels)
    return std::unexpected(error(u"The desktop has left no picture"_s));
  QImage picture = reader.read();
  if (picture.isNull()) return std::unexpected(error(reader.errorString()));
  return picture.convertToFormat(QImage::Format_RGB32);
}

/// Reads the file and removes it, if it is one that was made for us.
std::expected<QImage, ScreenCaptureError> takeFile(const QUrl& url, const QDateTime& asked) {
  const QString path = url.toLocalFile();
  if (path.isEmpty() || !isFresh(QFileInfo(path), asked))
    return std::unexpected(error(u"The desktop has left no new picture"_s));
  auto picture = readPicture(path);
  QFile::remove(path);
  return picture;
}

/// The piece of a picture of all screens that shows the area, at the size that our own pixels have.
QImage piece(const QImage& whole, const ScreenArea& area) {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (!screen) return {};
  const QRect all = screen->virtualGeometry();
  const double x = static_cast<double>(whole.width()) / all.width();
  const double y = static_cast<double>(whole.height()) / all.height();
  const QRectF place = area.points.translated(area.screen.topLeft() - all.topLeft());
  const QRectF pixels(place.x() * x, place.y() * y, place.width() * x, place.height() * y);
  const QImage cut = whole.copy(pixels.toAlignedRect() & whole.rect());
  if (cut.size() == area.pixels.size() || cut.isNull()) return cut;
  return cut.scaled(area.pixels.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

PortalScreenGrabber::PortalScreenGrabber(std::shared_ptr<Portal> portal, std::chrono::milliseconds patience)
    : portal_(std::move(portal)), patience_(patience) {}

void PortalScreenGrabber::grab(const ScreenArea& area, const std::vector<WindowID>&, const JobRef& job, Done done) {
  wanted_.push_back({area, job, job.bind(std::move(done))});
  if (run_.isRunning()) return;
  run_ = Job::start();
  QTimer::singleShot(kUntilPanelsAreGone, run_.scope(), run_.bind([this] { ask(); }));
}

void PortalScreenGrabber::ask() {
  // Nobody is asked for a picture that nobody wants any more.
  std::erase_if(wanted_, [](const Wanted& wanted) { return !wanted.job.isRunning(); });
  if (wanted_.empty()) return run_.cancel();
  asked_ = QDateTime::currentDateTimeUtc();
  PortalCall call{u"Screenshot"_s, u"Screenshot"_s, {QString()}, {{u"interactive"_s, false}}, patience_};
  portal_->request(std::move(call), run_, [this](const auto& answer) { take(answer); });
}

void PortalScreenGrabber::take(const std::expected<QVariantMap, PortalError>& answer) {
  if (!answer) return hand(std::unexpected(error(answer.error().reason)));
  const QUrl url(answer->value(u"uri"_s).toString());
  const auto read = [url, asked = asked_](const std::stop_token&) { return takeFile(url, asked); };
  runInBackground(run_, read, [this](const Whole& whole) { hand(whole); });
}

void PortalScreenGrabber::hand(const Whole& whole) {
  const std::vector<Wanted> wanted = std::exchange(wanted_, {});
  run_.cancel();
  for (const Wanted& each : wanted) {
    if (!whole) {
      each.done(std::unexpected(whole.error()));
    } else if (QImage cut = piece(*whole, each.area); !cut.isNull()) {
      each.done(ScreenPicture{std::move(cut), {}});
    } else {
      each.done(std::unexpected(error(u"The picture does not show that screen"_s)));
    }
  }
}
