#pragma once

#include <QAbstractListModel>

#include <vector>

#include "tools/frequent_clis/cli_command.h"

/// Filter and selection of the commands palette; the rows are the filtered commands. Main thread only.
class PaletteModel : public QAbstractListModel {
  Q_OBJECT

 public:
  enum Role {
    TitleRole = Qt::DisplayRole,
    /// The command as one readable line, at most `kPreviewLength` characters of it.
    CommandPreviewRole = Qt::UserRole,
    MonogramRole,
    IconColorRole,
    PressReturnRole,
  };

  /// More than a row has room for, little enough to be laid out at once.
  static constexpr int kPreviewLength = 200;

  using QAbstractListModel::QAbstractListModel;

  /// Starts over with a snapshot of the commands and an empty query.
  void reset(std::vector<CLICommand> commands);
  void setQuery(const QString& query);
  const QString& query() const { return query_; }
  const std::vector<CLICommand>& filtered() const { return filtered_; }
  int selectionIndex() const { return selectionIndex_; }
  /// Null without a selection.
  const CLICommand* selectedCommand() const;
  /// Selects a row; others than the rows there are change nothing.
  void select(int index);
  /// Cyclic; nothing happens in an empty list.
  void moveSelection(int delta);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 Q_SIGNALS:
  /// Query, rows or selection have changed.
  void changed();

 private:
  void refilter();
  std::vector<CLICommand> matches();

  std::vector<CLICommand> all_;
  /// What the query is compared with, for each of `all_`; made at the first query, so that opening costs nothing.
  std::vector<QString> searchKeys_;
  std::vector<CLICommand> filtered_;
  QString query_;
  int selectionIndex_ = 0;
};
