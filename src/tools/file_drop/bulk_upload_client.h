#pragma once

#include <QDateTime>

#include <functional>

#include "base/clock.h"
#include "platform/archiver.h"
#include "services/environments.h"
#include "services/multipart.h"
#include "tools/file_drop/archive_folder.h"
#include "tools/file_drop/bulk_upload_error.h"
#include "tools/file_drop/dropped_item.h"

/// Turns files and folders into one link: a single file as it is, anything else as one zip. Nothing of it stays in the
/// temporary folder, whatever happens. Main thread only, but for `makeZip`.
class BulkUploadClient {
 public:
  using Outcome = std::expected<QUrl, BulkUploadError>;
  using Done = std::function<void(const Outcome&)>;

  struct Services {
    Environments& environments;
    HttpClient& http;
    const Clock& clock;
    /// Shared with the thread that packs, which may outlive this object by a moment.
    std::shared_ptr<Archiver> archiver;
    QString temporaryFolder;
  };

  /// What is told on the way; the fractions run from 0 to 1.
  struct Observer {
    std::function<void(double)> zipping;
    std::function<void(double)> uploading;
  };

  /// An archive, with the folder that it is deleted with.
  struct Zip {
    std::shared_ptr<ArchiveFolder> folder;
    UploadFile file;
  };
  struct ZipRequest {
    QStringList paths;
    QString temporaryFolder;
    QDateTime time;
  };

  explicit BulkUploadClient(Services services) : services_(std::move(services)) {}
  /// What is being uploaded right now goes too: after the end of the event loop no cancelled run is cleared away.
  ~BulkUploadClient();
  BulkUploadClient(const BulkUploadClient&) = delete;
  BulkUploadClient& operator=(const BulkUploadClient&) = delete;

  /// Uploads measured items and answers once, later. The end of `job` cancels, without an answer.
  void upload(const std::vector<DroppedItem>& items, const Job& job, const Observer& observer, const Done& done);
  /// Uploads a small text file to see whether the service takes it.
  void testConnection(const JobRef& job, const Done& done);

  /// Packs everything into "bulk-<time>.zip". Blocking, for a background thread.
  static std::expected<Zip, BulkUploadError> makeZip(Archiver& archiver, const ZipRequest& request,
                                                     ArchiveProgress& progress, const std::stop_token& stop);
  /// Sends one file and finds the link in the answer.
  void post(const UploadFile& file, const TokenEnvironment& environment, const JobRef& job,
            const std::function<void(double)>& onProgress, const Done& done);

  /// Deletes what killed programs have left in the temporary folder.
  void removeLeftovers() const { ArchiveFolder::removeLeftovers(services_.temporaryFolder); }

 private:
  void zip(const QStringList& paths, const Job& job, const Observer& observer, const Done& done);
  /// `kept` lives as long as the upload.
  void send(const UploadFile& file, const std::shared_ptr<ArchiveFolder>& kept, const JobRef& job,
            const std::function<void(double)>& onProgress, const Done& done);

  Services services_;
  /// Those of the uploads under way.
  std::vector<std::weak_ptr<ArchiveFolder>> folders_;
};

/// The media type that a file's extension stands for, "application/octet-stream" when none is known.
QString mediaType(const QString& filename);
