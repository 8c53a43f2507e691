#pragma once

#include <QWidget>

#include <vector>

#include "core/ui/footer_hints.h"

class PaletteList;
class PaletteListModel;
class QLabel;
class QStackedLayout;
class RowDelegate;
class SearchField;

/// What a palette's card shows: the query, the matching rows or why there are none, and what the keys do. It draws the
/// model and tells which row was clicked.
class PaletteView : public QWidget {
  Q_OBJECT

 public:
  struct Texts {
    /// The tool's name.
    QString title;
    QString placeholder;
    /// What the list holds, for screen readers.
    QString listName;
    std::vector<KeyHint> hints;
  };

  /// Takes ownership of `delegate`.
  PaletteView(PaletteListModel& model, RowDelegate* delegate, Texts texts, QWidget* parent = nullptr);

  SearchField& search() { return *search_; }
  PaletteList& list() { return *list_; }
  FooterHints& footer() { return *footer_; }
  /// Puts a widget between the results and the footer, or at the list's side.
  void addBelow(QWidget* widget);
  void addBeside(QWidget* widget);

 Q_SIGNALS:
  void chosen(int row);

 private:
  QWidget* makeResults();
  void connectList();
  void follow();

  PaletteListModel& model_;
  SearchField* search_;
  PaletteList* list_;
  QLabel* empty_;
  FooterHints* footer_;
  QStackedLayout* results_ = nullptr;
};
