#pragma once

#include <QAbstractListModel>
#include <QStringList>

#include <vector>

#include "app/menu/menu_entries.h"

class HotkeyCenter;
class Tool;
class ToolRegistry;

/// One row of the menu.
struct MenuRow {
  enum class Kind { tool, entry, separator };

  Kind kind = Kind::separator;
  QString toolID = {};
  MenuEntry entry = {};
  QString title = {};
  QString symbol = {};
  /// Key caps of the shortcut, and the shortcut in words.
  QStringList caps = {};
  QString spelled = {};
  /// Stands in place of the caps when the shortcut does not work: a word or two, a symbol, and the whole reason.
  QString note = {};
  QString noteSymbol = {};
  QString reason = {};
  /// False for a tool that cannot be started now.
  bool isUsable = true;

  bool operator==(const MenuRow&) const = default;
  /// Whether both are rows of the same tool or entry.
  bool isSameAs(const MenuRow& other) const {
    return kind == other.kind && toolID == other.toolID && entry == other.entry;
  }
};

/// The menu's rows under the typed query, tools in the order of the launcher and the application's entries below them,
/// and which row is selected. Main thread only.
class MenuModel : public QAbstractListModel {
  Q_OBJECT

 public:
  enum Role { kKindRole = Qt::UserRole, kSymbolRole, kCapsRole, kNoteRole, kNoteSymbolRole, kUsableRole };

  MenuModel(const ToolRegistry& registry, const HotkeyCenter& hotkeys);

  const QString& query() const { return query_; }
  const std::vector<MenuRow>& rows() const { return rows_; }
  /// -1 in an empty list.
  int selection() const { return selection_; }
  /// Null without a selection.
  const MenuRow* selectedRow() const;

  /// Starts over with an empty query and the first row selected.
  void reset();
  /// Reads tools and shortcuts anew; the selection stays on its row as long as there is one.
  void refresh();
  /// Selects the first row that matches.
  void setQuery(const QString& query);
  /// Separators, and rows that there are not, change nothing.
  void select(int row);
  /// The next row in that direction, +1 or -1, going round at the ends.
  void moveSelection(int direction);
  void selectFirst() { selectFrom(0, +1); }
  void selectLast() { selectFrom(rowCount() - 1, -1); }

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 Q_SIGNALS:
  /// Query, rows or selection have changed.
  void changed();

 private:
  bool isSelectable(int row) const;
  void selectFrom(int row, int direction);
  void take(std::vector<MenuRow> rows);
  std::vector<MenuRow> matchingRows() const;
  MenuRow toolRow(const Tool& tool) const;

  const ToolRegistry& registry_;
  const HotkeyCenter& hotkeys_;
  QString query_;
  std::vector<MenuRow> rows_;
  int selection_ = -1;
};
