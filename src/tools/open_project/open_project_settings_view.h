#pragma once

#include <QWidget>

#include "tools/open_project/installed_presets.h"
#include "tools/open_project/open_project_settings.h"

class QComboBox;
class QLineEdit;
class RowRemark;
class SettingsSection;

/// The tool's page in the settings: what opens projects, and which agent starts in a terminal.
class OpenProjectSettingsView final : public QWidget {
  Q_OBJECT

 public:
  OpenProjectSettingsView(OpenProjectStore& store, InstalledPresets& installed, QWidget* parent = nullptr);

 private:
  void addCommand(SettingsSection& section);
  void addAgent(SettingsSection& section);
  QLineEdit* makeField(QString OpenProjectSettings::* text, const QString& name);
  void follow();
  void followAgent(const LaunchPreset* preset);
  void greyMissing();
  QString command() const;

  OpenProjectStore& store_;
  InstalledPresets& installed_;
  QComboBox* preset_ = nullptr;
  QLineEdit* command_ = nullptr;
  QWidget* runsAgent_ = nullptr;
  RowRemark* agentRemark_ = nullptr;
  QLineEdit* agent_ = nullptr;
  QWidget* yolo_ = nullptr;
  RowRemark* yoloRemark_ = nullptr;
};
