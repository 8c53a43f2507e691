#include "app/updates/automatic_updates.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "base/atomic_file.h"
#include "base/clock.h"
#include "base/logging.h"
#include "core/net/http_client.h"
#include "core/net/network_monitor.h"
#include "core/presenters/toast_presenter.h"
#include "platform/updater.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kBetweenLooks = 24h;
constexpr auto kSilence = 30s;
constexpr qint64 kLongestDescription = 64 * 1024;
/// Somebody who is called away should still find it.
constexpr auto kToast = 30s;

/// What is downloaded is run later: nobody on the way may change it, though its signature would tell.
bool isSafe(const QUrl& url) {
  return url.scheme() == "https"_L1 || (url.scheme() == "http"_L1 && isLoopbackHost(url.host()));
}

void report(const QString& what) { qCWarning(lcPlatform).noquote() << "No update:" << what; }

}  // namespace

UpdateSource UpdateSource::ofThisBuild() {
  return {QUrl(QStringLiteral(VANTLE_UPDATE_FOLDER)), QStringLiteral(VANTLE_UPDATE_PUBLISHER)};
}

bool UpdateSource::serves(const Updater& updater) const {
  return !updater.downloadName().isEmpty() && !publisher.isEmpty() && isSafe(folder);
}

AutomaticUpdates::AutomaticUpdates(Services services, UpdateSource source, QString running, QString folder)
    : services_(services), source_(std::move(source)), running_(std::move(running)), folder_(std::move(folder)) {}

void AutomaticUpdates::start() {
  if (source_.serves(services_.updater)) look();
}

void AutomaticUpdates::look() {
  day_ = Job::start();
  services_.clock.after(kBetweenLooks, day_, [this] { look(); });
  if (!services_.network.isOnline()) return;
  looking_ = Job::start();
  HttpRequest request{.method = "GET", .url = address(), .timeout = kSilence, .maximumAnswer = kLongestDescription};
  services_.http.send(request, looking_, [this](const auto& response) {
    if (!response) return report(response.error().description());
    takeDescription(*response);
  });
}

void AutomaticUpdates::takeDescription(const HttpResponse& response) {
  if (!response.isSuccess()) return report(u"the server answers %1"_s.arg(response.status));
  offer_ = UpdateOffer::read(response.body, address(), running_);
  dropOthers();
  if (!offer_ || offer_->version == told_) return;
  QFileInfo::exists(path()) ? verify() : download();
}

void AutomaticUpdates::download() {
  const HttpRequest request{.method = "GET", .url = offer_->url, .timeout = kSilence, .maximumAnswer = offer_->bytes};
  services_.http.send(request, looking_, [this](const auto& response) {
    if (!response) return report(response.error().description());
    if (!response->isSuccess()) return report(u"the server answers %1"_s.arg(response->status));
    takeDownload(response->body);
  });
}

void AutomaticUpdates::takeDownload(const QByteArray& image) {
  if (QCryptographicHash::hash(image, QCryptographicHash::Sha256) != offer_->digest)
    return report(u"the download is not what was described"_s);
  if (const auto written = writeFileAtomically(path(), image); !written) return report(written.error().description());
  verify();
}

void AutomaticUpdates::verify() {
  services_.updater.verify(path(), source_.publisher, looking_, [this](const std::expected<void, QString>& verified) {
    if (verified) return tell();
    QFile::remove(path());
    report(u"the download is not signed by its publisher: %1"_s.arg(verified.error()));
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
}

/// What was installed meanwhile, or is no longer offered.
void AutomaticUpdates::dropOthers() const {
  for (const QFileInfo& file : QDir(folder_).entryInfoList({u"Vantle-*.dmg"_s}, QDir::Files))
    if (!offer_ || file.filePath() != path()) QFile::remove(file.filePath());
}

QUrl AutomaticUpdates::address() const {
  QUrl address = source_.folder;
  address.setPath(address.path() + u'/' + services_.updater.downloadName() + u".json"_s);
  return address.adjusted(QUrl::NormalizePathSegments);
}

QString AutomaticUpdates::path() const { return folder_ + u"/Vantle-%1.dmg"_s.arg(offer_->version); }
