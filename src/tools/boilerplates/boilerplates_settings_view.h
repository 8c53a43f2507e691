#pragma once

#include <QPointer>
#include <QWidget>

#include "tools/boilerplates/boilerplate_settings.h"

class QFileDialog;
class QPushButton;
class QVBoxLayout;
class SettingsSection;

/// The tool's page in the settings: the template folders, each with its name to edit, and the button that adds one.
class BoilerplatesSettingsView final : public QWidget {
  Q_OBJECT

 public:
  explicit BoilerplatesSettingsView(BoilerplateStore& store, QWidget* parent = nullptr);

 private:
  void rebuild();
  QWidget* makeRow(const Boilerplate& boilerplate);
  void chooseFolder();

  BoilerplateStore& store_;
  QVBoxLayout* column_;
  QPushButton* add_;
  SettingsSection* list_ = nullptr;
  /// What the rows show, so that a change of a name or of the last place does not take the field from the user.
  std::vector<QUuid> shown_;
  QPointer<QFileDialog> dialog_;
};
