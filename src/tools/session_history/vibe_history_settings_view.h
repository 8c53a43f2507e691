#pragma once

#include <QWidget>

#include "tools/session_history/vibe_history_settings.h"

/// The tool's page in the settings: which agents' transcripts are read.
class VibeHistorySettingsView final : public QWidget {
  Q_OBJECT

 public:
  explicit VibeHistorySettingsView(VibeHistoryStore& store, QWidget* parent = nullptr);
};
