#pragma once

#include <QWidget>

#include <vector>

#include "tools/inject_md/inject_md_settings.h"

class MDDocumentEditor;
class QLineEdit;
class QPushButton;
class QVBoxLayout;
class RowRemark;
class SettingsSection;

/// The tool's page in the settings: the files, and the template of the one being edited.
class InjectMDSettingsView final : public QWidget {
  Q_OBJECT

 public:
  explicit InjectMDSettingsView(InjectMDStore& store, QWidget* parent = nullptr);

 private:
  struct Row {
    QUuid id;
    QPushButton* edit;
    QPushButton* makeDefault;
    QPushButton* remove;
  };

  void follow();
  void rebuild();
  void placeEditor();
  void addDocumentRow(const MDDocument& document);
  QWidget* makeButtons(const MDDocument& document);
  QWidget* makeAddControl();
  void add();
  void edit(const QUuid& id);
  void makeDefault(const QUuid& id);
  void remove(const QUuid& id);

  InjectMDStore& store_;
  QVBoxLayout* column_;
  SettingsSection* files_ = nullptr;
  std::vector<Row> rows_;
  QLineEdit* name_ = nullptr;
  QPushButton* add_ = nullptr;
  RowRemark* remark_ = nullptr;
  MDDocumentEditor* editor_;
};
