#pragma once

#include <memory>
#include <optional>

#include "app/updates/update_offer.h"
#include "app/updates/update_source.h"
#include "base/clock.h"

class DownloadFile;
class HttpClient;
struct HttpError;
struct HttpResponse;
class NetworkMonitor;
class ToastPresenter;
class Updater;

/// Downloads a newer version in the background, at the start and once a day, and tells the user when one is there: only
/// where nobody else brings updates, and only what its publisher has signed. Failures are logged; a look that could not
/// be finished is made again after a minute, and after twice as long each time up to four hours; one that fell due
/// without a network, a minute after there is one. What was offered and is not as it should be waits for the next day.
/// Main thread only.
class AutomaticUpdates {
 public:
  struct Services {
    HttpClient& http;
    Updater& updater;
    NetworkMonitor& network;
    ToastPresenter& toasts;
    Clock& clock;
  };

  /// `folder` is where downloads are kept.
  AutomaticUpdates(Services services, UpdateSource source, QString running, QString folder);
  /// What has not come whole is not left behind.
  ~AutomaticUpdates();
  AutomaticUpdates(const AutomaticUpdates&) = delete;
  AutomaticUpdates& operator=(const AutomaticUpdates&) = delete;

  void start();

 private:
  void look();
  void lookIn(std::chrono::minutes delay);
  void seeNetwork(bool online);
  void takeDescription(const HttpResponse& response);
  void download();
  void takeDownload(const std::expected<HttpResponse, HttpError>& response);
  void finishDownload();
  void verify();
  void tell();
  void tryAgain(const QString& failure);
  void settle();
  void giveUp(const QString& failure);
  void end();
  void drop(const QString& pattern, const QString& but = {}) const;

  QUrl address() const;
  QString path() const;

  Services services_;
  UpdateSource source_;
  QString running_;
  QString folder_;
  std::optional<UpdateOffer> offer_;
  /// The version that the user was told of in this run.
  QString told_;
  std::shared_ptr<DownloadFile> download_;
  /// Looks in a row that could not be finished.
  int failures_ = 0;
  /// When the next look is due by the wall clock: timers stand still while the computer sleeps.
  Clock::Seconds due_{0};
  Job watching_;
  Job looking_;
  Job waiting_;
};
