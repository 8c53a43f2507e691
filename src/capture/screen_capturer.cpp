#include "capture/screen_capturer.h"

#include <QScreen>

#include "base/background.h"
#include "capture/png_encoding.h"
#include "capture/selection_geometry.h"

namespace {

ScreenCaptureError noSuchArea() { return {QStringLiteral("The rectangle is on no screen")}; }

std::optional<ScreenArea> areaOf(const QRectF& globalRect, const QScreen& screen) {
  return screenArea(globalRect, screen.geometry(), screen.devicePixelRatio());
}

void encode(const QImage& pixels, const JobRef& job, ScreenCapturer::PNGDone done) {
  const auto work = [pixels](const std::stop_token&) { return pngOf(pixels); };
  runInBackground(job, work, [done = std::move(done)](QByteArray png) {
    if (png.isEmpty()) return done(std::unexpected(ScreenCaptureError{QStringLiteral("The picture was not encoded")}));
    done(std::move(png));
  });
}

template <class Done>
void fail(const JobRef& job, Done done) {
  job.later([done = std::move(done)] { done(std::unexpected(noSuchArea())); });
}

}  // namespace

void ScreenCapturer::capturePNG(const QRectF& globalRect, const QScreen& screen, const WindowIDs& excludingWindowIDs,
                                const JobRef& job, PNGDone done) {
  const auto area = areaOf(globalRect, screen);
  if (!area) return fail(job, std::move(done));
  grabber_.grab(*area, excludingWindowIDs, job, [run = job, done = std::move(done)](auto picture) {
    if (!picture) return done(std::unexpected(picture.error()));
    if (!picture->png.isEmpty()) return done(std::move(picture->png));
    encode(picture->pixels, run, done);
  });
}

void ScreenCapturer::takePicture(const QScreen& screen, const JobRef& job, PictureDone done) {
  const auto area = areaOf(screen.geometry(), screen);
  if (!area) return fail(job, std::move(done));
  grabber_.grab(*area, {}, job, [done = std::move(done)](auto picture) {
    if (!picture) return done(std::unexpected(picture.error()));
    done(std::move(picture->pixels));
  });
}

void ScreenCapturer::cutPNG(const QImage& picture, const QRectF& globalRect, const QScreen& screen, const JobRef& job,
                            PNGDone done) {
  const auto area = areaOf(globalRect, screen);
  const QRect pixels = area ? area->pixels.intersected(picture.rect()) : QRect();
  if (pixels.isEmpty()) return fail(job, std::move(done));
  encode(picture.copy(pixels), job, std::move(done));
}
