#pragma once

#include <QWidget>

class BulkUploadClient;
class SystemInfo;

/// File Drop's settings page: what the tool does, and whether its service can be reached.
class FileDropSettingsView : public QWidget {
  Q_OBJECT

 public:
  FileDropSettingsView(BulkUploadClient& client, const SystemInfo& system, QWidget* parent = nullptr);

 private:
  QWidget* makeTest();

  BulkUploadClient& client_;
};
