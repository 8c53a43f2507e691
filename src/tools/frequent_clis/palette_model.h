#pragma once

#include <vector>

#include "core/palette/palette_list_model.h"
#include "tools/frequent_clis/cli_command.h"

/// Filter and selection of the commands palette; the rows are the filtered commands. Main thread only.
class PaletteModel final : public PaletteListModel {
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

  using PaletteListModel::PaletteListModel;

  /// Starts over with a snapshot of the commands and an empty query.
  void reset(std::vector<CLICommand> commands);
  const std::vector<CLICommand>& filtered() const { return filtered_; }
  /// Null without a selection.
  const CLICommand* selectedCommand() const;
  QString emptyText() const override;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 protected:
  void collectRows() override;

 private:
  std::vector<CLICommand> matches();

  std::vector<CLICommand> all_;
  /// What the query is compared with, for each of `all_`; made at the first query, so that opening costs nothing.
  std::vector<QString> searchKeys_;
  std::vector<CLICommand> filtered_;
};
