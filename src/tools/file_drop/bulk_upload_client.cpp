#include "tools/file_drop/bulk_upload_client.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QTimer>

#include <algorithm>

#include "base/background.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Smooth for the eye, and next to nothing for the processor.
constexpr auto kProgressInterval = 50ms;
constexpr QByteArrayView kTestContent = "quarnel bulk upload connection test";

double fraction(const ArchiveProgress& progress) {
  const std::int64_t total = progress.totalBytes;
  if (total <= 0) return 0;
  return std::min(1.0, static_cast<double>(progress.bytes) / static_cast<double>(total));
}

/// "bulk-2026-11-14T215300Z.zip"
QString archiveName(const QDateTime& time) {
  return u"bulk-"_s + time.toUTC().toString(Qt::ISODate).remove(u':') + u".zip"_s;
}

std::optional<BulkUploadError> obstacle(const std::vector<DroppedItem>& items) {
  for (const DroppedItem& item : items)
    if (!item.fault.isEmpty()) return BulkUploadError::unusable(item.name(), item.fault);
  const qint64 total = totalBytes(items);
  return total > kMaximumUpload ? std::optional(BulkUploadError::tooLarge(total)) : std::nullopt;
}

BulkUploadClient::Outcome linkOf(const std::expected<HttpResponse, HttpError>& response) {
  const auto link = linkIn(response);
  if (!link) return std::unexpected(BulkUploadError::service(link.error()));
  return *link;
}

std::function<void(double)> ignoring(const std::function<void(double)>& report) {
  return report ? report : [](double) {};
}

}  // namespace

/// The database knows whole names too ("README"), which say nothing of what browsers do with the file.
QString mediaType(const QString& filename) {
  const QString extensions = QFileInfo(filename).completeSuffix();
  if (extensions.isEmpty()) return Multipart::kUnknownType;
  const QMimeType type = QMimeDatabase().mimeTypeForFile(u"x."_s + extensions, QMimeDatabase::MatchExtension);
  return type.isDefault() ? QString(Multipart::kUnknownType) : type.name();
}

BulkUploadClient::~BulkUploadClient() {
  for (const auto& one : folders_)
    if (const auto folder = one.lock()) folder->remove();
}

void BulkUploadClient::upload(const std::vector<DroppedItem>& items, const Job& job, const Observer& observer,
                              const Done& done) {
  if (const auto failure = obstacle(items)) {
    JobRef(job).later([done, error = *failure] { done(std::unexpected(error)); });
    return;
  }
  const DroppedItem& first = items.front();
  if (items.size() == 1 && !first.isFolder)
    return send({first.path, first.name(), mediaType(first.name())}, nullptr, job, observer.uploading, done);
  QStringList paths;
  for (const DroppedItem& item : items) paths.append(item.path);
  zip(paths, job, observer, done);
}

void BulkUploadClient::zip(const QStringList& paths, const Job& job, const Observer& observer, const Done& done) {
  const auto progress = std::make_shared<ArchiveProgress>();
  const auto report = ignoring(observer.zipping);
  report(0);
  auto* ticks = new QTimer(job.scope());
  ticks->callOnTimeout([tick = job.bind([report, progress] { report(fraction(*progress)); })]() mutable { tick(); });
  ticks->start(kProgressInterval);
  const auto now = std::chrono::duration_cast<std::chrono::seconds>(services_.clock.now());
  const ZipRequest request{paths, services_.temporaryFolder, QDateTime::fromSecsSinceEpoch(now.count(), Qt::UTC)};
  const auto packed = [this, job = JobRef(job), ticks, report = ignoring(observer.uploading), done](const auto& zip) {
    delete ticks;
    if (!zip) return done(std::unexpected(zip.error()));
    send(zip->file, zip->folder, job, report, done);
  };
  runInBackground(
      job,
      [archiver = services_.archiver, request, progress](const std::stop_token& stop) {
        return makeZip(*archiver, request, *progress, stop);
      },
      packed);
}

auto BulkUploadClient::makeZip(Archiver& archiver, const ZipRequest& request, ArchiveProgress& progress,
                               const std::stop_token& stop) -> std::expected<Zip, BulkUploadError> {
  auto folder = ArchiveFolder::make(request.temporaryFolder);
  if (!folder) return std::unexpected(BulkUploadError::zipFailed(folder.error().description()));
  const QString name = archiveName(request.time);
  Zip zip{std::move(*folder), {}};
  zip.file = {zip.folder->file(name), name, u"application/zip"_s};
  if (const auto packed = archiver.pack(archiveItems(request.paths), zip.file.path, progress, stop); !packed)
    return std::unexpected(BulkUploadError::zipFailed(packed.error().description()));
  return zip;
}

void BulkUploadClient::send(const UploadFile& file, const std::shared_ptr<ArchiveFolder>& kept, const JobRef& job,
                            const std::function<void(double)>& onProgress, const Done& done) {
  const auto report = ignoring(onProgress);
  report(0);
  std::erase_if(folders_, [](const auto& one) { return one.expired(); });
  if (kept) folders_.push_back(kept);
  services_.environments.current<BulkUploadEnvironment>(job, [=, this](const auto& environment) {
    if (!environment)
      return done(std::unexpected(BulkUploadError::service(UplinkError::of(environment.error().description()))));
    post(file, *environment, job, report, [done, kept](const Outcome& outcome) { done(outcome); });
  });
}

void BulkUploadClient::post(const UploadFile& file, const TokenEnvironment& environment, const JobRef& job,
                            const std::function<void(double)>& onProgress, const Done& done) {
  // It may have grown since it was measured.
  const QFileInfo now(file.path);
  if (now.isFile() && now.size() > kMaximumUpload && file.mimeType != "application/zip"_L1) {
    done(std::unexpected(BulkUploadError::tooLarge(now.size())));
    return;
  }
  auto request = Multipart::request(environment.endpoint, environment.token, file);
  if (!request) return done(std::unexpected(BulkUploadError::unusable(file.filename, request.error().reason)));
  request->progress = onProgress;
  services_.http.send(*request, job, [done](const auto& response) { done(linkOf(response)); });
}

void BulkUploadClient::testConnection(const JobRef& job, const Done& done) {
  auto folder = ArchiveFolder::make(services_.temporaryFolder);
  const QString name = u"bulk-test.txt"_s;
  const QString path = folder ? (*folder)->file(name) : QString();
  QFile file(path);
  if (!folder || !file.open(QIODevice::WriteOnly) || file.write(kTestContent.toByteArray()) != kTestContent.size() ||
      !file.flush()) {
    const QString reason = folder ? file.errorString() : folder.error().description();
    job.later([=] { done(std::unexpected(BulkUploadError::unusable(name, reason))); });
    return;
  }
  send({path, name, mediaType(name)}, std::move(*folder), job, {}, done);
}
