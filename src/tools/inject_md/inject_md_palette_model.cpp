#include "tools/inject_md/inject_md_palette_model.h"

#include <QSignalBlocker>

#include <algorithm>
#include <iterator>

#include "base/text_search.h"
#include "base/visible_text.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShown = 200;

}  // namespace

InjectMDPaletteModel::InjectMDPaletteModel(QString home) : projects_(std::move(home)) {
  connect(&projects_, &PaletteListModel::changed, this, [this] {
    if (step_ == Step::project) refilter();
  });
}

void InjectMDPaletteModel::ask(Step step, bool isFirst, const QString& prompt) {
  isFirst_ = isFirst;
  step_ = step;
  prompt_ = prompt;
  changes_.clear();
  restart();
}

void InjectMDPaletteModel::askForDocument(const InjectMDSettings& settings) {
  settings_ = settings;
  ask(Step::document, true, u"Which file do you want to inject?"_s);
  const auto chosen = std::ranges::find(documents_, settings_.defaultDocument().id, &MDDocument::id);
  select(static_cast<int>(chosen - documents_.begin()));
}

void InjectMDPaletteModel::askForProject(bool isFirst) { ask(Step::project, isFirst, u"Filter projects…"_s); }

void InjectMDPaletteModel::askToOverwrite(const MDDocument& document, const QString& folder, ExistingFile existing) {
  effect_ = u"%1: %2"_s.arg(visibleLine(document.fileName, kShown), existing.effect);
  ask(Step::overwrite, false, u"Overwrite the existing file in %1?"_s.arg(projects_.shownPath(folder)));
  changes_ = std::move(existing.changes);
  Q_EMIT changed();
}

QString InjectMDPaletteModel::verb() const {
  if (step_ == Step::document) return u"choose"_s;
  return step_ == Step::project ? u"write it there"_s : u"answer"_s;
}

int InjectMDPaletteModel::projectCount() const { return projects_.rowCount(); }

const MDDocument* InjectMDPaletteModel::document(int row) const {
  const bool isOne = step_ == Step::document && row >= 0 && row < rowCount();
  return isOne ? &documents_[static_cast<std::size_t>(row)] : nullptr;
}

const ProjectFolder* InjectMDPaletteModel::project(int row) const {
  const bool isOne = step_ == Step::project && row >= 0 && row < projectCount();
  return isOne ? &projects_.filtered()[static_cast<std::size_t>(row)] : nullptr;
}

bool InjectMDPaletteModel::isFolderChooser(int row) const { return step_ == Step::project && row == projectCount(); }

bool InjectMDPaletteModel::isConfirmation(int row) const { return step_ == Step::overwrite && row == 1; }

QString InjectMDPaletteModel::emptyText() const { return u"No matching files"_s; }

int InjectMDPaletteModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  if (step_ == Step::document) return static_cast<int>(documents_.size());
  return step_ == Step::project ? projectCount() + 1 : 2;
}

QVariant InjectMDPaletteModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const int row = index.row();
  if (project(row)) return role > ProjectListModel::TimeRole ? QVariant() : projects_.index(row).data(role);
  const Line shown = line(row);
  switch (role) {
    case ProjectListModel::NameRole:
      return shown.title;
    case ProjectListModel::PathRole:
      return shown.detail;
    case SymbolRole:
      return shown.symbol;
    case NoticeRole:
      return notice(row).isEmpty() ? QVariant() : QVariant(notice(row));
    case Qt::AccessibleTextRole:
      return (notice(row).isEmpty() ? QString() : notice(row) + u", "_s) + shown.title + u", "_s + shown.detail;
    default:
      return {};
  }
}

void InjectMDPaletteModel::collectRows() {
  documents_.clear();
  if (step_ == Step::project && projects_.query() != query()) {
    // Its rows are being collected here: they need not be told of.
    const QSignalBlocker blocker(projects_);
    projects_.setQuery(query());
  }
  if (step_ != Step::document) return;
  const QString key = searchKey(query());
  std::ranges::copy_if(settings_.documents, std::back_inserter(documents_),
                       [&key](const MDDocument& document) { return searchKey(document.fileName).contains(key); });
}

InjectMDPaletteModel::Line InjectMDPaletteModel::line(int row) const {
  if (const MDDocument* shown = document(row)) return documentLine(*shown);
  if (step_ == Step::project) return {u"Choose Folder…"_s, u"into any folder on disk"_s, u"folder"_s};
  if (row == 0) return {u"Keep the existing file"_s, u"Nothing is written"_s, u"xmark"_s};
  return {u"Overwrite the existing file"_s, effect_, u"arrow.down.doc.fill"_s};
}

InjectMDPaletteModel::Line InjectMDPaletteModel::documentLine(const MDDocument& document) const {
  const QString& text = document.contents;
  const bool hasOpenEnd = !text.isEmpty() && !text.endsWith(u'\n');
  const QString size = countedLines(text.count(u'\n') + (hasOpenEnd ? 1 : 0));
  const bool isDefault = document.id == settings_.defaultDocument().id;
  return {visibleLine(document.fileName, kShown), isDefault ? size + u" · the default"_s : size,
          u"arrow.down.doc.fill"_s};
}

QString InjectMDPaletteModel::notice(int row) const {
  return isFolderChooser(row) && row == 0 ? projects_.emptyText() : QString();
}
