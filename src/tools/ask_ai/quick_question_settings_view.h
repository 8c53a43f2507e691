#pragma once

#include "tools/asking/ask_settings_view.h"

class QuickQuestionClient;
class SystemInfo;

class QuickQuestionSettingsView final : public AskSettingsView {
  Q_OBJECT

 public:
  QuickQuestionSettingsView(QuickQuestionClient& client, const SystemInfo& system, QWidget* parent = nullptr);
};
