#pragma once

#include <QObject>

#include "app/app_context.h"

class CheckControl;
class CommittedField;
class QComboBox;
class QLabel;
class SettingsPage;
class SettingsSection;

/// Who answers the AI tools of the built-in service; not shown when another service is used. A child of the page.
class ProviderSection : public QObject {
  Q_OBJECT

 public:
  ProviderSection(SettingsPage& page, AppContext& context);

 private:
  void addKind(SettingsSection& section);
  void addCheck(SettingsSection& section);
  CommittedField* addField(SettingsSection& section, const QString& title, const QString& description,
                           QString AIProvider::* value);
  void addKey(SettingsSection& section);
  void follow();
  void showSections();
  void showIdle();

  Services& services_;
  QComboBox* kind_ = nullptr;
  CheckControl* check_ = nullptr;
  QLabel* heading_ = nullptr;
  SettingsSection* choice_ = nullptr;
  SettingsSection* online_ = nullptr;
  SettingsSection* images_ = nullptr;
  SettingsSection* command_ = nullptr;
  CommittedField* baseUrl_ = nullptr;
  std::vector<CommittedField*> fields_;
};
