#include "tools/projects/project_list_model.h"

#include <QColor>

#include <algorithm>
#include <iterator>

#include "base/relative_time.h"
#include "base/text_search.h"
#include "base/visible_text.h"

using namespace Qt::StringLiterals;

namespace {

/// More than a row has room for.
constexpr int kShown = 300;

QStringList agentNames(const ProjectFolder& folder, QLatin1StringView SessionAgentText::* name) {
  QStringList names;
  for (const SessionAgent agent : folder.agents) names.append(text(agent).*name);
  return names;
}

}  // namespace

void ProjectListModel::beginLoading(const QDateTime& now) {
  now_ = now;
  isLoading_ = true;
  all_.clear();
  restart();
}

void ProjectListModel::finishLoading(std::vector<ProjectFolder> folders) {
  keep(std::move(folders));
  refilter();
}

void ProjectListModel::keep(std::vector<ProjectFolder> folders) {
  all_ = std::move(folders);
  isLoading_ = false;
}

const ProjectFolder* ProjectListModel::selectedFolder() const {
  const auto index = static_cast<std::size_t>(selectionIndex());
  return index < filtered_.size() ? &filtered_[index] : nullptr;
}

QString ProjectListModel::emptyText() const {
  if (isLoading_) return u"Looking for your projects…"_s;
  return all_.empty() ? u"No project folders found in your session history"_s : u"No matching projects"_s;
}

int ProjectListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(filtered_.size());
}

QVariant ProjectListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const ProjectFolder& folder = filtered_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case NameRole:
      return visibleLine(folder.name(), kShown);
    case PathRole:
    case Qt::ToolTipRole:
      return shownPath(folder.path);
    case KindTagRole:
      return QString(text(folder.kind).tag);
    case KindColorRole:
      return QColor(text(folder.kind).color);
    case AgentsRole:
      return agentNames(folder, &SessionAgentText::rawValue);
    case TimeRole:
      return relativeTime(localTime(folder.lastActivity), now_);
    case Qt::AccessibleTextRole:
      return accessibleText(folder);
    default:
      return {};
  }
}

void ProjectListModel::collectRows() {
  const QString key = searchKey(query());
  const auto matches = [&key](const ProjectFolder& folder) {
    return key.isEmpty() || searchKey(folder.name()).contains(key) || searchKey(folder.path).contains(key);
  };
  filtered_.clear();
  std::ranges::copy_if(all_, std::back_inserter(filtered_), matches);
}

QString ProjectListModel::shownPath(const QString& path) const {
  const bool isInHome = !home_.isEmpty() && (path == home_ || path.startsWith(home_ + u'/'));
  return visibleLine(isInHome ? u'~' + path.mid(home_.size()) : path, kShown);
}

QString ProjectListModel::accessibleText(const ProjectFolder& folder) const {
  QStringList parts{visibleLine(folder.name(), kShown), shownPath(folder.path)};
  if (!folder.agents.empty()) parts.append(agentNames(folder, &SessionAgentText::displayName).join(u" and "_s));
  parts.append(relativeTime(localTime(folder.lastActivity), now_));
  return parts.join(u", "_s);
}
