#pragma once

#include <QPointer>
#include <QWidget>

#include <stop_token>

#include "base/clock.h"
#include "core/data/data_export.h"
#include "core/settings/folders.h"

class QFileDialog;
class QPushButton;
class RowRemark;

/// Asks for a folder, copies the data into it in the background and says where it is. The same button cancels.
class ExportControl : public QWidget {
  Q_OBJECT

 public:
  ExportControl(const Folders& folders, Clock& clock);
  ~ExportControl() override;

  /// Where the outcome is told; must live as long.
  void setRemark(RowRemark* remark) { remark_ = remark; }

 private:
  void press();
  void choose();
  void start(const QString& destination);
  void finish(const std::expected<ExportedData, DataExportError>& exported);
  void follow();

  const Folders& folders_;
  Clock& clock_;
  QPushButton* show_;
  QPushButton* export_;
  RowRemark* remark_ = nullptr;
  QPointer<QFileDialog> dialog_;
  QString exported_;
  std::stop_source stop_;
  Job job_;
};
