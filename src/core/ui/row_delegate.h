#pragma once

#include <QColor>
#include <QFont>
#include <QRect>
#include <QStyledItemDelegate>

struct Theme;

/// The look of one row while it is painted.
struct RowLook {
  const Theme& theme;
  /// Where the row's contents go.
  QRect area;
  bool selected;
  QColor text;
  QColor secondary;
  QFont detailFont;
};

/// Paints the ground of palette rows, 44 pixels high: the selected one in the accent with white text, the one under the
/// pointer shaded. What stands on it is the derived class's.
class RowDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  /// Room left and right between the row's ground and its contents.
  static constexpr int kPadding = 8;

  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const final;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 protected:
  virtual void paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const = 0;
  /// Pixels above the row for a heading of the group that begins with it; none for most rows.
  virtual int headingHeight([[maybe_unused]] const QModelIndex& index) const { return 0; }
  /// Paints the heading, which belongs to no row: it is neither selected nor under the pointer.
  virtual void paintHeading([[maybe_unused]] QPainter& painter, [[maybe_unused]] const QModelIndex& index,
                            [[maybe_unused]] const QRect& area, [[maybe_unused]] const Theme& theme) const {}
};

/// Draws a title and, where there is one, a detail line under it, both cut short to fit `area`.
void paintTitleAndDetail(QPainter& painter, const QRect& area, const QString& title, const QString& detail,
                         const RowLook& look);
