#pragma once

#include <QWidget>

class BulkUploadModel;
class ProgressLine;
class QLabel;

/// What the drop window shows while it packs and uploads.
class UploadProgressView : public QWidget {
  Q_OBJECT

 public:
  explicit UploadProgressView(const BulkUploadModel& model, QWidget* parent = nullptr);

  void follow();

 Q_SIGNALS:
  void cancelled();

 private:
  const BulkUploadModel& model_;
  QLabel* title_;
  ProgressLine* line_;
  QLabel* share_;
};
