#include "tools/open_project/open_project_model.h"

#include <algorithm>
#include <iterator>

#include "base/text_search.h"

using namespace Qt::StringLiterals;

OpenProjectModel::OpenProjectModel(const InstalledPresets& installed, QString home)
    : ProjectListModel(std::move(home)), installed_(installed) {
  connect(&installed_, &InstalledPresets::changed, this, &OpenProjectModel::followInstalled);
}

void OpenProjectModel::startOver(const QDateTime& now) {
  chosen_.reset();
  beginLoading(now);
}

void OpenProjectModel::takeProjects(std::vector<ProjectFolder> folders) {
  if (isChoosingCommand())
    keep(std::move(folders));
  else
    finishLoading(std::move(folders));
}

void OpenProjectModel::showCommands(const ProjectFolder& folder, const QString& usual) {
  projectQuery_ = query();
  projectIndex_ = selectionIndex();
  chosen_ = folder;
  restart();
  if (const LaunchPreset* preset = presetOf(commands_, usual)) select(static_cast<int>(preset - commands_.data()));
}

void OpenProjectModel::showProjects() {
  chosen_.reset();
  setQuery(projectQuery_);
  select(projectIndex_);
}

const LaunchPreset* OpenProjectModel::selectedPreset() const {
  const auto index = static_cast<std::size_t>(selectionIndex());
  return isChoosingCommand() && index < commands_.size() ? &commands_[index] : nullptr;
}

QString OpenProjectModel::emptyText() const {
  return isChoosingCommand() ? u"No matching commands"_s : ProjectListModel::emptyText();
}

int OpenProjectModel::rowCount(const QModelIndex& parent) const {
  if (!isChoosingCommand()) return ProjectListModel::rowCount(parent);
  return parent.isValid() ? 0 : static_cast<int>(commands_.size());
}

QVariant OpenProjectModel::data(const QModelIndex& index, int role) const {
  if (!isChoosingCommand()) return ProjectListModel::data(index, role);
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const LaunchPreset& preset = commands_[static_cast<std::size_t>(index.row())];
  const bool isMissing = !installed_.isInstalled(preset.name);
  switch (role) {
    case NameRole:
      return preset.name;
    case PathRole:
      return isMissing ? u"Not installed"_s : preset.command;
    case IconRole:
      return preset.icon;
    case IsPresetRole:
      return true;
    case IsMissingRole:
      return isMissing;
    case Qt::AccessibleTextRole:
      return isMissing ? preset.name + u", not installed"_s : preset.name;
    default:
      return {};
  }
}

void OpenProjectModel::collectRows() {
  if (!isChoosingCommand()) {
    ProjectListModel::collectRows();
    return;
  }
  const QString key = searchKey(query());
  commands_.clear();
  std::ranges::copy_if(installed_.presets(), std::back_inserter(commands_), [&key](const LaunchPreset& preset) {
    return key.isEmpty() || searchKey(preset.name).contains(key) || searchKey(preset.command).contains(key);
  });
  std::ranges::stable_partition(
      commands_, [this](const QString& name) { return installed_.isInstalled(name); }, &LaunchPreset::name);
}

void OpenProjectModel::followInstalled() {
  if (isChoosingCommand() && rowCount() > 0) Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}
