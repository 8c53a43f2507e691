#pragma once

#include <QWidget>

#include "tools/generate_image/generate_image_settings.h"

class GenerateImageClient;
class ImageHistory;
class SystemInfo;
class QComboBox;
class RowRemark;

/// Generate Image's settings page: what it does, how much it keeps, and whether its service answers.
class GenerateImageSettingsView final : public QWidget {
  Q_OBJECT

 public:
  struct Services {
    GenerateImageClient& client;
    GenerateImageStore& settings;
    ImageHistory& history;
    const SystemInfo& system;
  };

  /// `removal` deletes the history when the user means it.
  GenerateImageSettingsView(Services services, QWidget* removal, QWidget* parent = nullptr);

 private:
  QWidget* makeConnection();
  QWidget* makeHistory(QWidget* removal);
  void follow();

  Services services_;
  QComboBox* room_;
  QWidget* removal_;
  RowRemark* used_ = nullptr;
};
