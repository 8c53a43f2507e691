#pragma once

#include <QAbstractListModel>
#include <QString>

#include <optional>
#include <vector>

#include "base/clock.h"
#include "core/tools/tool_registry.h"

/// What the launcher shows: the tools that match the query, the highlighted one and the page it is on. The list model
/// has one row a shown tool. Main thread only.
class ToolLauncherModel : public QAbstractListModel {
  Q_OBJECT

 public:
  static constexpr int kColumns = 3;
  /// Tiles on a page.
  static constexpr int kPageSize = 9;
  enum Role { kToolIDRole = Qt::UserRole };

  explicit ToolLauncherModel(Clock& clock);

  const std::vector<ToolItem>& items() const { return items_; }
  const QString& query() const { return query_; }
  int selectionIndex() const { return selection_; }
  /// The page with the highlighted tool; the two are never apart.
  int currentPage() const { return selection_ / kPageSize; }
  bool isShown() const { return shown_; }
  bool isArranging() const { return arranging_; }
  /// The tool whose tile pulses right now; empty for none.
  const QString& pulseID() const { return pulseID_; }
  /// Tools before filtering.
  int totalCount() const { return static_cast<int>(all_.size()); }
  int count() const { return static_cast<int>(items_.size()); }
  int pageCount() const;
  /// Rows of tiles on a page.
  int gridRows() const;
  std::optional<ToolItem> selectedItem() const;

  /// A fresh start: no query, no arrange mode, the first tool highlighted.
  void reset(std::vector<ToolItem> items);
  /// Takes a new order under the same query.
  void refresh(std::vector<ToolItem> items, const QString& keepingSelectionOn);
  void setQuery(const QString& query);
  /// Filters by the query; the highlight stays on its tool when that is still shown, else goes to the first.
  void refilter();
  /// Moves the highlight; it stops at the ends.
  void move(int by);
  /// Ignores an index that has no tool.
  void select(int index);
  void select(const QString& toolID);
  void setShown(bool shown);
  void setArranging(bool arranging);
  /// Lets a tool's tile pulse for a moment.
  void pulse(const QString& toolID);
  /// Something that the tiles show beside the model has changed: the network, a shortcut.
  void touch() { Q_EMIT changed(); }

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QHash<int, QByteArray> roleNames() const override;

 Q_SIGNALS:
  void changed();

 private:
  bool matches(const ToolItem& item) const;
  void filter(const QString& keepingSelectionOn);
  int indexOf(const QString& toolID) const;

  Clock& clock_;
  std::vector<ToolItem> all_;
  std::vector<ToolItem> items_;
  QString query_;
  int selection_ = 0;
  bool shown_ = false;
  bool arranging_ = false;
  QString pulseID_;
  Job pulse_;
};
