#pragma once

#include <QUrl>

#include <optional>

#include "app/updates/update_offer.h"
#include "base/job.h"

class Clock;
class HttpClient;
struct HttpResponse;
class NetworkMonitor;
class ToastPresenter;
class Updater;

/// Where new versions are described, and who makes them. A plain value.
struct UpdateSource {
  /// The folder that holds a description for each system and processor ("macos-arm64.json"); empty: there is none.
  QUrl folder;
  /// As `Updater::verify` takes it.
  QString publisher;

  static UpdateSource ofThisBuild();
  /// Whether an installation that `updater` looks after is brought up to date from here.
  bool serves(const Updater& updater) const;
};

/// Downloads a newer version in the background, at the start and once a day, and tells the user when one is there: only
/// where nobody else brings updates, and only what its publisher has signed. Failures are logged, and tried again at
/// the next look. Main thread only.
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

  void start();

 private:
  void look();
  void takeDescription(const HttpResponse& response);
  void download();
  void takeDownload(const QByteArray& image);
  void verify();
  void tell();
  void dropOthers() const;

  QUrl address() const;
  QString path() const;

  Services services_;
  UpdateSource source_;
  QString running_;
  QString folder_;
  std::optional<UpdateOffer> offer_;
  /// The version that the user was told of in this run.
  QString told_;
  Job looking_;
  Job day_;
};
