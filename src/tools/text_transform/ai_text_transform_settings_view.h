#pragma once

#include <QWidget>

#include "platform/permissions.h"
#include "platform/system_info.h"
#include "tools/text_transform/ai_text_transform_client.h"
#include "tools/text_transform/ai_text_transform_settings.h"

class QComboBox;
class QLabel;

/// The tool's page in the settings: where the result goes, how the tool is used, and whether the service answers.
class AITextTransformSettingsView final : public QWidget {
  Q_OBJECT

 public:
  struct Services {
    AITextTransformStore& settings;
    AITextTransformClient& client;
    const Permissions& permissions;
    const SystemInfo& system;
  };

  explicit AITextTransformSettingsView(Services services, QWidget* parent = nullptr);

 private:
  void follow();
  QString privacyNote() const;
  QWidget* makeResult();
  QWidget* makeTest();

  Services services_;
  QComboBox* output_;
  QLabel* replaceNote_;
};
