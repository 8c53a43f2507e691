#pragma once

#include <optional>
#include <vector>

#include "tools/inject_md/inject_md_settings.h"
#include "tools/inject_md/md_injector.h"
#include "tools/projects/project_list_model.h"

/// The rows of one question after the other: which file, which project, and whether to overwrite what is there. The
/// project rows are those of a ProjectListModel, roles included, with "Choose Folder…" behind them. Main thread only.
class InjectMDPaletteModel final : public PaletteListModel {
  Q_OBJECT

 public:
  enum class Step { document, project, overwrite };
  enum Role {
    /// Of rows that are no project; empty for those that are.
    SymbolRole = ProjectListModel::TimeRole + 1,
    /// Above the row, else null.
    NoticeRole,
  };

  explicit InjectMDPaletteModel(QString home);

  /// Empties the list of projects until `projects().finishLoading(…)`.
  ProjectListModel& projects() { return projects_; }

  /// Asks for one of the files, with the default one selected.
  void askForDocument(const InjectMDSettings& settings);
  /// `isFirst`: Escape does not lead back to another question.
  void askForProject(bool isFirst);
  void askToOverwrite(const MDDocument& document, const QString& folder, ExistingFile existing);

  Step step() const { return step_; }
  /// What is asked, in place of a query.
  QString prompt() const { return prompt_; }
  /// What Return and Escape do, in a word or three.
  QString verb() const;
  QString escapeVerb() const { return isFirst_ ? QStringLiteral("close") : QStringLiteral("back"); }

  /// What overwriting would change, as long as it is asked.
  const std::vector<DiffLine>& changes() const { return changes_; }

  /// Null unless the row is that of a file, or of a project.
  const MDDocument* document(int row) const;
  const ProjectFolder* project(int row) const;
  bool isFolderChooser(int row) const;
  bool isConfirmation(int row) const;

  QString emptyText() const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 protected:
  void collectRows() override;

 private:
  struct Line {
    QString title;
    QString detail;
    QString symbol;
  };
  void ask(Step step, bool isFirst, const QString& prompt);
  int projectCount() const;
  Line line(int row) const;
  Line documentLine(const MDDocument& document) const;
  QString notice(int row) const;

  ProjectListModel projects_;
  Step step_ = Step::project;
  bool isFirst_ = true;
  QString prompt_;
  InjectMDSettings settings_;
  std::vector<MDDocument> documents_;
  /// Of the file that would be overwritten.
  QString effect_;
  std::vector<DiffLine> changes_;
};
