#pragma once

#include <QAbstractListModel>

#include <vector>

#include "core/hotkeys/key_press.h"
#include "tools/frequent_clis/cli_command.h"

/// Filter and selection of the commands palette; the rows are the filtered commands.
class PaletteModel : public QAbstractListModel {
  Q_OBJECT

 public:
  enum Role { TitleRole = Qt::DisplayRole, CommandRole = Qt::UserRole, IconRole, PressReturnRole };

  using QAbstractListModel::QAbstractListModel;

  /// Starts over with a snapshot of the commands and an empty query.
  void reset(std::vector<CLICommand> commands);
  void setQuery(const QString& query);
  const QString& query() const { return query_; }
  const std::vector<CLICommand>& filtered() const { return filtered_; }
  int selectionIndex() const { return selectionIndex_; }
  void select(int index);
  /// Null without a selection.
  const CLICommand* selectedCommand() const;
  /// Cyclic.
  void moveSelection(int delta);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 Q_SIGNALS:
  /// Query or selection have changed.
  void changed();

 private:
  void refilter();

  std::vector<CLICommand> all_;
  std::vector<CLICommand> filtered_;
  QString query_;
  int selectionIndex_ = 0;
};
