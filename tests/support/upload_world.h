#pragma once

#include <sys/stat.h>

#include <memory>
#include <optional>

#include "support/fake_archiver.h"
#include "support/files.h"
#include "support/service_world.h"
#include "tools/file_drop/bulk_upload_client.h"

/// Everything that File Drop uploads with, over a temporary folder of its own and a service of the test's choice.
struct UploadWorld {
  /// With `real`, requests go out by that client instead of waiting in `services.http`.
  explicit UploadWorld(HttpClient* real = nullptr) : own(real ? servicesOver(*real) : nullptr) {
    if (!QDir(temporary()).mkpath(QStringLiteral("."))) qFatal("no folder");
  }

  QString path(const QString& name) const { return services.directory.filePath(name); }
  QString temporary() const { return path(QStringLiteral("tmp")); }
  QStringList leftInTemporary() const {
    return QDir(temporary()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }
  /// Sends the tool's requests there.
  void useEndpoint(const QUrl& url) {
    writeFile(services.folders.file(QStringLiteral("BulkUpload/config.json")),
              R"({"endpoint":")" + url.toEncoded() + R"(","token":"t"})");
  }
  QString file(const QString& name, const QByteArray& bytes = "x") {
    if (!writeFile(path(name), bytes)) qFatal("cannot write");
    return path(name);
  }
  /// A file of that size without content.
  QString sparse(const QString& name, qint64 size) {
    QFile file(path(name));
    if (!file.open(QFile::WriteOnly) || !file.resize(size)) qFatal("cannot write");
    return file.fileName();
  }
  std::vector<DroppedItem> items(const QStringList& paths) {
    std::vector<DroppedItem> all;
    for (const QString& path : paths) all.push_back(measured(path, {}));
    return all;
  }
  void upload(const QStringList& paths) {
    job = Job::start();
    client.upload(items(paths), job, {}, [this](const auto& result) { outcome = result; });
  }

  ServiceWorld services;
  std::unique_ptr<Services> own;
  std::shared_ptr<FakeArchiver> archiver = std::make_shared<FakeArchiver>();
  BulkUploadClient client{{own ? own->environments : services.services.environments, own ? own->http : services.http,
                           services.clock, archiver, temporary()}};
  Job job;
  std::optional<BulkUploadClient::Outcome> outcome;

 private:
  std::unique_ptr<Services> servicesOver(HttpClient& real) {
    return std::make_unique<Services>(services.folders, real, services.vault, services.builtIn, services.clock);
  }
};
