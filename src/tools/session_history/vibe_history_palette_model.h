#pragma once

#include <QDateTime>

#include <vector>

#include "core/palette/palette_list_model.h"
#include "tools/session_history/vibe_session.h"

/// The sessions of one project within one date group.
struct ProjectGroup {
  /// The working directory.
  QString id;
  QString name;
  std::vector<VibeSession> sessions;
};

struct DateGroup {
  QString title;
  std::vector<ProjectGroup> projects;
};

/// The group a time belongs to, seen from `now`, both in local time.
QString bucketTitle(const QDateTime& lastActivity, const QDateTime& now);

/// The recent conversations, filtered, and grouped by age and by project, both newest first; the rows follow the
/// groups. Main thread only.
class VibeHistoryPaletteModel final : public PaletteListModel {
  Q_OBJECT

 public:
  enum Role {
    TitleRole = Qt::DisplayRole,
    /// The agent's display name.
    AgentRole = Qt::UserRole,
    BranchRole,
    /// How long ago.
    TimeRole,
    /// Above the first row of a date group, else null.
    DateGroupRole,
    /// Above the first row of a project within it, else null.
    ProjectGroupRole,
    IsFolderGoneRole,
  };

  using PaletteListModel::PaletteListModel;

  /// A scan begins: the rows of the last one stay away, the query is empty.
  void beginLoading(const QDateTime& now);
  /// Shows what the scan found, under the query typed meanwhile. `gone`: working directories that do not exist.
  void finishLoading(std::vector<VibeSession> sessions, QStringList gone);
  /// Time has passed: what rows say of it, and to which groups they belong, is brought up to date; selection and query
  /// stay.
  void setNow(const QDateTime& now);

  bool isLoading() const { return isLoading_; }
  const std::vector<DateGroup>& groups() const { return groups_; }
  /// The matching sessions in the order of the rows.
  const std::vector<VibeSession>& filtered() const { return filtered_; }
  /// Null without one.
  const VibeSession* selectedSession() const;

  QString emptyText() const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 protected:
  void collectRows() override;

 private:
  bool matches(const VibeSession& session) const;
  void group(const VibeSession& session);
  void flatten();
  void regroup();
  QString accessibleText(const VibeSession& session) const;

  std::vector<VibeSession> all_;
  QStringList gone_;
  QDateTime now_;
  std::vector<DateGroup> groups_;
  std::vector<VibeSession> filtered_;
  /// For each row the headings above it.
  struct Headings {
    QString date;
    QString project;
  };
  std::vector<Headings> headings_;
  bool isLoading_ = false;
};
