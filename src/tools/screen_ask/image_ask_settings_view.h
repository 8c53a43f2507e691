#pragma once

#include "tools/asking/ask_settings_view.h"

class ImageAskClient;

class ImageAskSettingsView final : public AskSettingsView {
  Q_OBJECT

 public:
  explicit ImageAskSettingsView(ImageAskClient& client, QWidget* parent = nullptr);
};
