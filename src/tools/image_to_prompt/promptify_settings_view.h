#pragma once

#include <QWidget>

#include "platform/permissions.h"
#include "platform/system_info.h"
#include "tools/image_to_prompt/promptify_client.h"
#include "tools/image_to_prompt/promptify_settings.h"

class QComboBox;
class QLabel;

/// The tool's page in the settings: where the image comes from, what the prompt is for, and whether the service
/// answers.
class PromptifySettingsView final : public QWidget {
  Q_OBJECT

 public:
  struct Services {
    PromptifyStore& settings;
    PromptifyClient& client;
    const Permissions& permissions;
    const SystemInfo& system;
  };

  explicit PromptifySettingsView(Services services, QWidget* parent = nullptr);

 private:
  void follow();
  QWidget* makeSource();
  QWidget* makeStyle();
  QWidget* makeTest();

  Services services_;
  QComboBox* source_;
  QLabel* sourceNote_;
  QComboBox* style_;
  QLabel* styleNote_;
};
