#pragma once

#include <QWidget>

#include <expected>
#include <functional>

#include "base/job.h"

class BulkUploadClient;
class SystemInfo;

/// File Drop's settings page: what the tool does, and whether its service can be reached.
class FileDropSettingsView : public QWidget {
  Q_OBJECT

 public:
  FileDropSettingsView(BulkUploadClient& client, const SystemInfo& system, QWidget* parent = nullptr);

 private:
  QWidget* makeTest();
  void test(const JobRef& job, const std::function<void(std::expected<QString, QString>)>& done);

  BulkUploadClient& client_;
};
