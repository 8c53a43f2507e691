#include "tools/boilerplates/boilerplates_settings_view.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/visible_text.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShownPath = 200;
constexpr int kNameWidth = 200;

void showName(QLineEdit& field, QPushButton& remove, const QString& name) {
  field.setText(name);
  field.setAccessibleName(u"Name of %1"_s.arg(name));
  remove.setAccessibleName(u"Remove %1 from the list"_s.arg(name));
}

}  // namespace

BoilerplatesSettingsView::BoilerplatesSettingsView(BoilerplateStore& store, QWidget* parent)
    : QWidget(parent), store_(store), column_(new QVBoxLayout(this)), add_(new QPushButton(u"Add Folder…"_s)) {
  column_->setContentsMargins({});
  column_->setSpacing(Theme::kGrid);
  column_->addWidget(makeHeading(u"Template folders"_s));
  connect(add_, &QPushButton::clicked, this, &BoilerplatesSettingsView::chooseFolder);
  column_->addWidget(add_, 0, Qt::AlignLeft);
  column_->addWidget(
      makeDetailLabel(u"A new project is a copy of the folder, without .git and what .gitignore names. {{name}} in "
                      u"file names and small text files becomes the project’s name."_s));
  column_->addStretch(1);
  connect(&store_, &StoreBase::changed, this, &BoilerplatesSettingsView::rebuild);
  rebuild();
}

void BoilerplatesSettingsView::rebuild() {
  std::vector<QUuid> ids;
  for (const Boilerplate& boilerplate : store_.value().templates) ids.push_back(boilerplate.id);
  if (list_ && ids == shown_) return;
  shown_ = std::move(ids);
  const bool hadFocus = list_ && list_->isAncestorOf(focusWidget());
  if (list_) {
    list_->hide();
    list_->deleteLater();
  }
  QWidget* lastRemove = nullptr;
  list_ = new SettingsSection;
  for (const Boilerplate& boilerplate : store_.value().templates) {
    QWidget* row = makeRow(boilerplate);
    list_->addWide(row);
    lastRemove = row->findChild<QPushButton*>();
  }
  if (shown_.empty()) list_->addWide(makeDetailLabel(u"No template folders yet"_s));
  column_->insertWidget(1, list_);
  // The button was made before the rows that stand above it.
  if (lastRemove) setTabOrder(lastRemove, add_);
  if (hadFocus) add_->setFocus();
}

QWidget* BoilerplatesSettingsView::makeRow(const Boilerplate& boilerplate) {
  auto* row = new QWidget;
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins({});
  line->setSpacing(Theme::kGrid);
  auto* name = new QLineEdit;
  name->setFixedWidth(kNameWidth);
  QLabel* path = makeDetailLabel(visibleLine(boilerplate.path, kShownPath));
  auto* remove = new QPushButton(u"Remove"_s);
  remove->setToolTip(u"Remove from the list (doesn’t touch the folder)"_s);
  showName(*name, *remove, boilerplate.name);
  connect(name, &QLineEdit::editingFinished, this, [this, name, remove, id = boilerplate.id] {
    QString known;
    store_.update([&](BoilerplateSettings& settings) { known = settings.rename(id, name->text()); });
    showName(*name, *remove, known);
  });
  connect(remove, &QPushButton::clicked, this,
          [this, id = boilerplate.id] { store_.update([&](BoilerplateSettings& settings) { settings.remove(id); }); });
  line->addWidget(name);
  line->addWidget(path, 1);
  line->addWidget(remove);
  return row;
}

void BoilerplatesSettingsView::chooseFolder() {
  if (!dialog_) {
    dialog_ = new QFileDialog(this, u"Choose a template folder"_s, QDir::homePath());
    dialog_->setFileMode(QFileDialog::Directory);
    dialog_->setOption(QFileDialog::ShowDirsOnly);
    dialog_->setLabelText(QFileDialog::Accept, u"Add"_s);
    dialog_->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog_, &QFileDialog::fileSelected, this, [this](const QString& folder) {
      store_.update([&](BoilerplateSettings& settings) { settings.add(folder); });
    });
  }
  dialog_->show();
  dialog_->activateWindow();
}
