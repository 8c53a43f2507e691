#include "tools/boilerplates/boilerplates_palette_model.h"

#include <QDir>

#include "base/text_search.h"
#include "base/visible_text.h"
#include "tools/boilerplates/project_name.h"

using namespace Qt::StringLiterals;

namespace {

/// More than a row has room for.
constexpr int kShown = 200;

/// A path as the user writes it.
QString shownPath(const QString& path) {
  const QString home = QDir::homePath();
  const bool isBelowHome = path == home || path.startsWith(home + u'/');
  return visibleLine(isBelowHome ? u'~' + path.mid(home.size()) : path, kShown);
}

}  // namespace

void BoilerplatesPaletteModel::enter(BoilerplateStep step) {
  step_ = step;
  restart();
}

void BoilerplatesPaletteModel::askForBoilerplate(std::vector<Boilerplate> boilerplates) {
  boilerplates_ = std::move(boilerplates);
  enter(BoilerplateStep::boilerplate);
}

void BoilerplatesPaletteModel::askForName(const Boilerplate& boilerplate, const QString& name) {
  boilerplate_ = boilerplate;
  enter(BoilerplateStep::name);
  if (!name.isEmpty()) setQuery(name);
}

void BoilerplatesPaletteModel::askForPlace(const QString& name) {
  name_ = name;
  enter(BoilerplateStep::place);
}

void BoilerplatesPaletteModel::setPlaces(const QStringList& places) {
  places_ = places;
  if (step_ == BoilerplateStep::place) refilter();
}

void BoilerplatesPaletteModel::showProgress(const QString& progress) {
  progress_ = progress;
  enter(BoilerplateStep::copying);
}

std::optional<BoilerplatesPaletteModel::Action> BoilerplatesPaletteModel::selectedAction() const {
  return rows_.empty() ? std::nullopt : std::optional(selectedRow().action);
}

QString BoilerplatesPaletteModel::emptyText() const {
  switch (step_) {
    case BoilerplateStep::boilerplate:
      return u"No matching boilerplates"_s;
    case BoilerplateStep::name:
      return projectNameProblem(query());
    case BoilerplateStep::place:
      return u"No matching folders"_s;
    case BoilerplateStep::copying:
      return progress_;
  }
  return {};
}

int BoilerplatesPaletteModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant BoilerplatesPaletteModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const Row& row = rows_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case TitleRole:
      return row.title;
    case DetailRole:
      return row.detail;
    case SymbolRole:
      return row.symbol;
    case Qt::AccessibleTextRole:
      return QString(row.title + u", "_s + row.detail);
    default:
      return {};
  }
}

void BoilerplatesPaletteModel::collectRows() {
  rows_.clear();
  if (step_ == BoilerplateStep::boilerplate) collectBoilerplates();
  if (step_ == BoilerplateStep::name) collectName();
  if (step_ == BoilerplateStep::place) collectPlaces();
}

bool BoilerplatesPaletteModel::matches(const QString& text) const {
  return query().isEmpty() || searchKey(text).contains(searchKey(query()));
}

void BoilerplatesPaletteModel::collectBoilerplates() {
  for (std::size_t i = 0; i < boilerplates_.size(); ++i) {
    const Boilerplate& boilerplate = boilerplates_[i];
    if (matches(boilerplate.name) || matches(boilerplate.path))
      rows_.push_back({Action::useBoilerplate, u"shippingbox.fill"_s, visibleLine(boilerplate.name, kShown),
                       shownPath(boilerplate.path), i});
  }
  if (boilerplates_.empty())
    rows_.push_back({Action::openSettings, u"plus"_s, u"Add a Template Folder…"_s,
                     u"No boilerplates yet. The settings keep the list."_s});
}

void BoilerplatesPaletteModel::collectName() {
  if (!projectNameProblem(query()).isEmpty()) return;
  rows_.push_back({Action::useName, u"folder"_s, visibleLine(query(), kShown),
                   u"New project from %1"_s.arg(visibleLine(boilerplate_.name, kShown))});
}

void BoilerplatesPaletteModel::collectPlaces() {
  for (qsizetype i = 0; i < places_.size(); ++i) {
    const QString& place = places_[i];
    if (matches(place))
      rows_.push_back({Action::usePlace, u"folder"_s, shownPath(place), shownPath(QDir(place).filePath(name_)),
                       static_cast<std::size_t>(i)});
  }
  rows_.push_back({Action::chooseFolder, u"ellipsis"_s, u"Choose Folder…"_s, u"into any folder on disk"_s});
}
