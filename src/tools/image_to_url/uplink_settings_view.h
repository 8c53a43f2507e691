#pragma once

#include <QWidget>

#include <expected>

#include "core/settings/store.h"
#include "platform/permissions.h"
#include "platform/system_info.h"
#include "tools/image_to_url/uplink_settings.h"
#include "tools/image_to_url/uplink_uploader.h"

class QComboBox;
class QLabel;

/// The tool's page in the settings: where the image comes from, what happens to it, and whether the service answers.
class UplinkSettingsView final : public QWidget {
  Q_OBJECT

 public:
  struct Services {
    UplinkStore& settings;
    UplinkUploader& uploader;
    const Permissions& permissions;
    const SystemInfo& system;
  };

  explicit UplinkSettingsView(Services services, QWidget* parent = nullptr);

 private:
  void follow();
  QString explanation() const;
  QWidget* makeSource();
  QWidget* makeTest();

  Services services_;
  QComboBox* source_;
  QLabel* explanation_;
};
