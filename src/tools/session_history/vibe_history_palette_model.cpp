#include "tools/session_history/vibe_history_palette_model.h"

#include <algorithm>

#include "base/relative_time.h"
#include "base/text_search.h"
#include "base/visible_text.h"

using namespace Qt::StringLiterals;

namespace {

/// More than a row has room for.
constexpr int kShown = 200;

/// Null text for none: a heading that is not there is no empty heading.
QVariant heading(const QString& text) { return text.isNull() ? QVariant() : QVariant(text); }

}  // namespace

QString bucketTitle(const QDateTime& lastActivity, const QDateTime& now) {
  const qint64 days = lastActivity.date().daysTo(now.date());
  if (days <= 0) return u"Today"_s;
  if (days == 1) return u"Yesterday"_s;
  if (days < 7) return u"Previous 7 Days"_s;
  return days < 30 ? u"Previous 30 Days"_s : u"Older"_s;
}

void VibeHistoryPaletteModel::beginLoading(const QDateTime& now) {
  now_ = now;
  isLoading_ = true;
  all_.clear();
  restart();
}

void VibeHistoryPaletteModel::finishLoading(std::vector<VibeSession> sessions, QStringList gone) {
  all_ = std::move(sessions);
  gone_ = std::move(gone);
  isLoading_ = false;
  refilter();
}

void VibeHistoryPaletteModel::setNow(const QDateTime& now) {
  const bool regroups = now.date() != now_.date();
  now_ = now;
  if (regroups)
    regroup();
  else if (rowCount() > 0)
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {TimeRole, Qt::AccessibleTextRole});
}

/// Where two days fall into one group their projects join, and rows change their places.
void VibeHistoryPaletteModel::regroup() {
  const std::string selected = selectedSession() ? selectedSession()->transcript : std::string();
  refilter();
  const auto row = std::ranges::find(filtered_, selected, &VibeSession::transcript);
  select(static_cast<int>(row - filtered_.begin()));
}

const VibeSession* VibeHistoryPaletteModel::selectedSession() const {
  const auto index = static_cast<std::size_t>(selectionIndex());
  return index < filtered_.size() ? &filtered_[index] : nullptr;
}

QString VibeHistoryPaletteModel::emptyText() const {
  if (isLoading_) return u"Reading your conversations…"_s;
  return all_.empty() ? u"No recent Claude Code or Codex sessions found"_s : u"No matching sessions"_s;
}

int VibeHistoryPaletteModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(filtered_.size());
}

QVariant VibeHistoryPaletteModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto row = static_cast<std::size_t>(index.row());
  const VibeSession& session = filtered_[row];
  switch (role) {
    case TitleRole:
      return visibleLine(session.title, kShown);
    case AgentRole:
      return QString(text(session.agent).displayName);
    case BranchRole:
      return visibleLine(session.gitBranch.value_or(QString()), kShown);
    case TimeRole:
      return relativeTime(localTime(session.lastActivity), now_);
    case DateGroupRole:
      return heading(headings_[row].date);
    case ProjectGroupRole:
      return heading(headings_[row].project);
    case IsFolderGoneRole:
      return gone_.contains(session.cwd);
    case Qt::ToolTipRole:
      return visibleLine(session.cwd, kShown);
    case Qt::AccessibleTextRole:
      return accessibleText(session);
    default:
      return {};
  }
}

void VibeHistoryPaletteModel::collectRows() {
  groups_.clear();
  for (const VibeSession& session : all_)
    if (matches(session)) group(session);
  flatten();
}

bool VibeHistoryPaletteModel::matches(const VibeSession& session) const {
  if (query().isEmpty()) return true;
  const QString key = searchKey(query());
  return searchKey(session.title).contains(key) || searchKey(session.projectName()).contains(key) ||
         searchKey(text(session.agent).displayName).contains(key);
}

/// Sessions come newest first, so a group that is new comes behind those there are.
void VibeHistoryPaletteModel::group(const VibeSession& session) {
  const QString title = bucketTitle(localTime(session.lastActivity), now_);
  if (groups_.empty() || groups_.back().title != title) groups_.push_back({title, {}});
  std::vector<ProjectGroup>& projects = groups_.back().projects;
  const auto known = std::ranges::find(projects, session.cwd, &ProjectGroup::id);
  ProjectGroup& project =
      known != projects.end()
          ? *known
          : projects.emplace_back(session.cwd, visibleLine(session.projectName(), kShown), std::vector<VibeSession>());
  project.sessions.push_back(session);
}

void VibeHistoryPaletteModel::flatten() {
  filtered_.clear();
  headings_.clear();
  for (const DateGroup& date : groups_) {
    for (const ProjectGroup& project : date.projects) {
      filtered_.insert(filtered_.end(), project.sessions.begin(), project.sessions.end());
      headings_.resize(filtered_.size());
      Headings& first = headings_[filtered_.size() - project.sessions.size()];
      first.project = project.name;
      if (&project == &date.projects.front()) first.date = date.title;
    }
  }
}

QString VibeHistoryPaletteModel::accessibleText(const VibeSession& session) const {
  QString spoken = u"%1, %2, %3, %4"_s.arg(visibleLine(session.title, kShown), text(session.agent).displayName,
                                           visibleLine(session.projectName(), kShown),
                                           relativeTime(localTime(session.lastActivity), now_));
  if (session.gitBranch) spoken += u", branch %1"_s.arg(visibleLine(*session.gitBranch, kShown));
  if (gone_.contains(session.cwd)) spoken += u", its folder is gone"_s;
  return spoken;
}
