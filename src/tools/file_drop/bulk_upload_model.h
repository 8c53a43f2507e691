#pragma once

#include <QAbstractListModel>
#include <QSet>
#include <QUrl>

#include <optional>

#include "tools/file_drop/bulk_upload_error.h"
#include "tools/file_drop/dropped_item.h"

/// What the drop window shows: the items as rows, how far their upload is, and what became of it. Main thread only.
class BulkUploadModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  enum class Phase {
    /// The list is being filled.
    collecting,
    zipping,
    uploading,
    done,
    failed,
  };
  enum Role {
    NameRole = Qt::UserRole + 1,
    /// Size and count; or what is wrong with the item.
    DetailRole,
    IsFolderRole,
    HasFaultRole,
  };
  /// A button of the result.
  enum class ResultAction { copyLink, tryAgain, startOver };

  using QAbstractListModel::QAbstractListModel;

  // The list

  /// Adds the files and folders among `urls`, in their order, each once; an earlier result is forgotten. Answers the
  /// paths that are new. Nothing happens while an upload runs.
  QStringList add(const QList<QUrl>& urls);
  /// What was found out about items; those that are no longer in the list are ignored.
  void takeMeasured(const std::vector<DroppedItem>& items);
  /// Has every item measured anew; answers their paths.
  QStringList forgetMeasures();
  void removeSelected();
  /// An empty list.
  void reset();

  const std::vector<DroppedItem>& items() const { return items_; }
  QList<QUrl> files() const;
  qint64 totalBytes() const { return ::totalBytes(items_); }
  bool isMeasuring() const { return unmeasured_ > 0; }
  int selectedIndex() const { return selectedIndex_; }
  void select(int row);
  /// Stops at both ends.
  void moveSelection(int delta) { select(selectedIndex_ + delta); }

  // The upload

  Phase phase() const { return phase_; }
  bool isBusy() const { return phase_ == Phase::zipping || phase_ == Phase::uploading; }
  /// Of the phase that is running, from 0 to 1.
  double progress() const { return progress_; }
  void showZipping(double progress) { showWork(Phase::zipping, progress); }
  void showUploading(double progress) { showWork(Phase::uploading, progress); }
  void finish(const QUrl& link);
  void fail(const BulkUploadError& error);
  /// The items as they were, to be changed or uploaded.
  void backToList();

  // The result

  const QUrl& link() const { return link_; }
  const std::optional<BulkUploadError>& error() const { return error_; }
  bool copied() const { return copied_; }
  void setCopied();
  std::vector<ResultAction> resultActions() const;
  int resultButtonIndex() const { return resultButtonIndex_; }
  void selectResultButton(int index);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 Q_SIGNALS:
  void changed();

 private:
  void showWork(Phase phase, double progress);
  void enter(Phase phase);

  std::vector<DroppedItem> items_;
  QSet<QString> paths_;
  std::size_t unmeasured_ = 0;
  int selectedIndex_ = 0;
  Phase phase_ = Phase::collecting;
  double progress_ = 0;
  QUrl link_;
  std::optional<BulkUploadError> error_;
  bool copied_ = false;
  int resultButtonIndex_ = 0;
};

/// "3 items · 12.4 MB"
QString summary(const BulkUploadModel& model);
