#include "app/updates/automatic_updates.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

#include "base/logging.h"
#include "core/net/download_file.h"
#include "core/net/http_client.h"
#include "core/net/network_monitor.h"
#include "core/presenters/toast_presenter.h"
#include "platform/updater.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kBetweenLooks = 24h;
constexpr std::chrono::minutes kShortestPause = 1min;
constexpr std::chrono::minutes kLongestPause = 4h;
constexpr auto kSilence = 30s;
constexpr qint64 kLongestDescription = 64 * 1024;
/// Somebody who is called away should still find it.
constexpr auto kToast = 30s;

/// Twice as long after each failure.
std::chrono::minutes pauseAfter(int failures) {
  constexpr int kMostDoublings = 8;
  return std::min(kShortestPause * (1 << std::min(failures, kMostDoublings)), kLongestPause);
}

void report(const QString& what) { qCWarning(lcPlatform).noquote() << "No update:" << what; }

}  // namespace

AutomaticUpdates::AutomaticUpdates(Services services, UpdateSource source, QString running, QString folder)
    : services_(services), source_(std::move(source)), running_(std::move(running)), folder_(std::move(folder)) {}

AutomaticUpdates::~AutomaticUpdates() { end(); }

void AutomaticUpdates::start() {
  if (!source_.serves(services_.updater)) return;
  watching_ = Job::start();
  watching_.on(&services_.network, &NetworkMonitor::changed, [this](bool online) { seeNetwork(online); });
  look();
}

void AutomaticUpdates::look() {
  // One that still hangs is broken off.
  end();
  lookIn(kBetweenLooks);
  if (!services_.network.isOnline()) return;
  // A killed program's.
  drop(u"Vantle-*"_s + DownloadFile::kPart);
  looking_ = Job::start();
  HttpRequest request{.method = "GET", .url = address(), .timeout = kSilence, .maximumAnswer = kLongestDescription};
  services_.http.send(request, looking_, [this](const auto& response) {
    if (!response) return tryAgain(response.error().description());
    takeDescription(*response);
  });
}

void AutomaticUpdates::lookIn(std::chrono::minutes delay) {
  waiting_ = Job::start();
  services_.clock.after(delay, waiting_, [this] { look(); });
}

/// A network that has just come is seldom through yet, and one that comes and goes shall not begin a download each
/// time.
void AutomaticUpdates::seeNetwork(bool online) {
  if (!online) return;
  failures_ = 0;
  if (!looking_.isRunning() && services_.clock.now() >= due_) lookIn(kShortestPause);
}

void AutomaticUpdates::takeDescription(const HttpResponse& response) {
  if (!response.isSuccess()) return tryAgain(u"the server answers %1"_s.arg(response.status));
  const auto offer = UpdateOffer::read(response.body, address(), running_);
  if (!offer) return giveUp(offer.error());
  offer_ = *offer;
  // What was installed meanwhile, or is no longer offered.
  drop(u"Vantle-*.dmg"_s, offer_ ? path() : QString());
  if (!offer_ || offer_->version == told_) return settle();
  QFileInfo::exists(path()) ? verify() : download();
}

void AutomaticUpdates::download() {
  const auto file = DownloadFile::beside(path());
  if (!file) return tryAgain(file.error().description());
  download_ = *file;
  // What is described is the file itself.
  const HttpRequest request{.method = "GET",
                            .url = offer_->url,
                            .headers = {{"Accept-Encoding", "identity"}},
                            .sink = download_,
                            .timeout = kSilence,
                            .maximumAnswer = offer_->bytes};
  services_.http.send(request, looking_, [this](const auto& response) { takeDownload(response); });
}

void AutomaticUpdates::takeDownload(const std::expected<HttpResponse, HttpError>& response) {
  if (response && response->isSuccess()) return finishDownload();
  if (response) return tryAgain(u"the server answers %1"_s.arg(response->status));
  if (response.error().reason == HttpError::Reason::tooLarge)
    return giveUp(u"the download is longer than the %1 bytes that were described"_s.arg(offer_->bytes));
  tryAgain(response.error().description());
}

void AutomaticUpdates::finishDownload() {
  if (download_->digest() != offer_->digest) return giveUp(u"the download is not what was described"_s);
  if (const auto finished = download_->finish(); !finished) return tryAgain(finished.error().description());
  verify();
}

void AutomaticUpdates::verify() {
  services_.updater.verify(path(), source_.publisher, looking_, [this](const std::expected<void, QString>& verified) {
    if (verified) return tell();
    QFile::remove(path());
    giveUp(u"the download is not signed by its publisher: %1"_s.arg(verified.error()));
  });
}

void AutomaticUpdates::tell() {
  told_ = offer_->version;
  services_.toasts.show({.icon = u"arrow.down.doc.fill"_s,
                         .tone = ToastTone::accent,
                         .title = u"Vantle %1 is here"_s.arg(told_),
                         .detail = u"Click to open it, then drag Vantle over the one you have."_s,
                         .onTap = [&updater = services_.updater, image = path()] { updater.open(image); }},
                        kToast);
  settle();
}

void AutomaticUpdates::tryAgain(const QString& failure) {
  report(failure);
  end();
  lookIn(pauseAfter(failures_++));
}

/// The look is done, whatever it has found.
void AutomaticUpdates::settle() {
  end();
  failures_ = 0;
  due_ = services_.clock.now() + kBetweenLooks;
}

/// The same would come again, and another download is long.
void AutomaticUpdates::giveUp(const QString& failure) {
  report(failure);
  settle();
}

void AutomaticUpdates::end() {
  looking_ = Job();
  // Whoever else still holds it: nobody may be there to let go when the program ends.
  if (const auto download = std::exchange(download_, nullptr)) download->discard();
}

void AutomaticUpdates::drop(const QString& pattern, const QString& but) const {
  for (const QFileInfo& file : QDir(folder_).entryInfoList({pattern}, QDir::Files))
    if (file.filePath() != but) QFile::remove(file.filePath());
}

QUrl AutomaticUpdates::address() const {
  QUrl address = source_.folder;
  address.setPath(address.path() + u'/' + services_.updater.downloadName() + u".json"_s);
  return address.adjusted(QUrl::NormalizePathSegments);
}

QString AutomaticUpdates::path() const { return folder_ + u"/Vantle-%1.dmg"_s.arg(offer_->version); }
