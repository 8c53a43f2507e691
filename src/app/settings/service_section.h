#pragma once

#include <QObject>

#include "app/app_context.h"

class CheckControl;
class CommittedField;
class QComboBox;
class SettingsPage;
class SettingsSection;

/// Which service the tools use: the built-in one or hosts of the user's own, the credential for those, and a test. A
/// child of the page.
class ServiceSection : public QObject {
  Q_OBJECT

 public:
  ServiceSection(SettingsPage& page, AppContext& context);

 private:
  void addChoice(SettingsSection& section);
  void addCheck(SettingsSection& section);
  void addHosts(SettingsSection& section);
  CommittedField* addHost(SettingsSection& section, const QString& title, QString ServiceSettings::* host);
  void addToken(SettingsSection& section);
  bool isOwnChosen() const;
  void choose(bool isOwn);
  void follow();
  void showIdle();
  QString idleText() const;
  void test(const JobRef& job, const std::function<void(std::expected<QString, QString>)>& done);

  Services& services_;
  QComboBox* choice_ = nullptr;
  CheckControl* check_ = nullptr;
  SettingsSection* hosts_ = nullptr;
  std::vector<CommittedField*> fields_;
};

/// Adds everything about services to a page.
void addServiceSections(SettingsPage& page, AppContext& context);
