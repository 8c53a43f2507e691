#include "tools/inject_md/inject_md_settings_view.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

#include "base/visible_text.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "tools/inject_md/md_document_editor.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShown = 60;
constexpr int kNameWidth = 160;

QHBoxLayout* layOut(QWidget* control) {
  auto* row = new QHBoxLayout(control);
  row->setContentsMargins({});
  row->setSpacing(Theme::kGrid);
  return row;
}

/// `meaning` is said in full to whoever hovers or listens.
QPushButton* makeButton(const QString& text, const QString& meaning, const QString& fileName) {
  auto* button = new QPushButton(text);
  button->setToolTip(meaning);
  button->setAccessibleName(u"%1: %2"_s.arg(fileName, text));
  button->setAccessibleDescription(meaning);
  return button;
}

}  // namespace

InjectMDSettingsView::InjectMDSettingsView(InjectMDStore& store, QWidget* parent)
    : QWidget(parent), store_(store), column_(new QVBoxLayout(this)), editor_(new MDDocumentEditor(store)) {
  column_->setContentsMargins({});
  column_->setSpacing(Theme::kGrid);
  column_->addWidget(makeHeading(u"Files"_s));
  column_->addWidget(
      makeDetailLabel(u"Offered for every project you've run Claude Code or Codex in, and for any folder on disk."_s));
  column_->addSpacing(Theme::kGrid);
  column_->addStretch(1);
  connect(&store_, &StoreBase::changed, this, &InjectMDSettingsView::follow);
  follow();
  edit(store_.value().defaultDocument().id);
}

void InjectMDSettingsView::follow() {
  const InjectMDSettings& settings = store_.value();
  if (!std::ranges::equal(rows_, settings.documents, {}, &Row::id, &MDDocument::id)) rebuild();
  for (const Row& row : rows_) {
    const bool isDefault = row.id == settings.defaultDocument().id;
    row.makeDefault->setText(isDefault ? u"Default"_s : u"Make default"_s);
    row.makeDefault->setEnabled(!isDefault);
    row.remove->setEnabled(rows_.size() > 1);
  }
  if (!settings.find(editor_->edited())) edit(settings.defaultDocument().id);
}

void InjectMDSettingsView::rebuild() {
  rows_.clear();
  if (files_) {
    files_->hide();
    files_->deleteLater();
  }
  files_ = new SettingsSection;
  column_->insertWidget(1, files_);
  for (const MDDocument& document : store_.value().documents) addDocumentRow(document);
  remark_ = files_->addRow(u"Add a file"_s, u"CLAUDE.md, BOOTSTRAP.md, SOUL.md and BACKLOG.md come with a template"_s,
                           makeAddControl());
  files_->show();
  placeEditor();
}

/// The keyboard comes to widgets in the order in which they were given to the page: the editor's turn is after the
/// list.
void InjectMDSettingsView::placeEditor() {
  column_->removeWidget(editor_);
  editor_->setParent(nullptr);
  column_->insertWidget(column_->count() - 1, editor_);
  editor_->show();
}

void InjectMDSettingsView::addDocumentRow(const MDDocument& document) {
  files_->addRow(visibleLine(document.fileName, kShown), {}, makeButtons(document));
}

QWidget* InjectMDSettingsView::makeButtons(const MDDocument& document) {
  const QString name = visibleLine(document.fileName, kShown);
  const QUuid id = document.id;
  auto* control = new QWidget;
  QHBoxLayout* row = layOut(control);
  const Row made{id, makeButton(u"Edit"_s, u"Edit this file's template"_s, name),
                 makeButton(u"Make default"_s, u"Make this the default file"_s, name),
                 makeButton(u"Remove"_s, u"Remove from the list (doesn't touch any project)"_s, name)};
  for (QPushButton* button : {made.edit, made.makeDefault, made.remove}) row->addWidget(button);
  // It says "Default" in one of the rows; the buttons stand below one another all the same.
  made.makeDefault->setMinimumWidth(made.makeDefault->sizeHint().width());
  connect(made.edit, &QPushButton::clicked, this, [this, id] {
    edit(id);
    editor_->takeFocus();
  });
  connect(made.makeDefault, &QPushButton::clicked, this, [this, id] { makeDefault(id); });
  connect(made.remove, &QPushButton::clicked, this, [this, id] { remove(id); });
  rows_.push_back(made);
  return control;
}

QWidget* InjectMDSettingsView::makeAddControl() {
  auto* control = new QWidget;
  QHBoxLayout* row = layOut(control);
  name_ = new QLineEdit;
  name_->setPlaceholderText(u"File name"_s);
  name_->setAccessibleName(u"Name of the file to add"_s);
  name_->setFixedWidth(kNameWidth);
  add_ = new QPushButton(u"Add"_s);
  add_->setAccessibleName(u"Add the file"_s);
  row->addWidget(name_);
  row->addWidget(add_);
  connect(name_, &QLineEdit::textEdited, this, [this] { remark_->showError({}); });
  connect(name_, &QLineEdit::returnPressed, this, &InjectMDSettingsView::add);
  connect(add_, &QPushButton::clicked, this, &InjectMDSettingsView::add);
  control->setFocusProxy(name_);
  return control;
}

void InjectMDSettingsView::add() {
  std::expected<QUuid, QString> added;
  const QString name = name_->text();
  store_.update([&](InjectMDSettings& settings) { added = settings.add(name); });
  if (!added) return remark_->showError(added.error());
  edit(*added);
  editor_->takeFocus();
}

void InjectMDSettingsView::edit(const QUuid& id) { editor_->edit(id); }

/// The button is disabled then, and Qt would hand the focus on to the one that removes.
void InjectMDSettingsView::makeDefault(const QUuid& id) {
  store_.update([id](InjectMDSettings& settings) { settings.makeDefault(id); });
  const auto row = std::ranges::find(rows_, id, &Row::id);
  if (row != rows_.end()) row->edit->setFocus();
}

/// The focus goes to the row that takes the place, and there to what does no harm.
void InjectMDSettingsView::remove(const QUuid& id) {
  const auto place = static_cast<std::size_t>(std::ranges::find(rows_, id, &Row::id) - rows_.begin());
  store_.update([id](InjectMDSettings& settings) { settings.remove(id); });
  rows_[std::min(place, rows_.size() - 1)].edit->setFocus();
}
