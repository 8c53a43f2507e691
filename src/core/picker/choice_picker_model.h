#pragma once

#include <QAbstractListModel>

#include <vector>

/// One row of a choice picker.
struct Choice {
  /// Symbol name.
  QString symbol;
  QString label;
  /// What it means; empty: the label says it all.
  QString description{};
};

/// The fixed rows of a choice picker, and which of them is highlighted. Main thread only.
class ChoicePickerModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  enum Role { LabelRole = Qt::DisplayRole, SymbolRole = Qt::UserRole, DescriptionRole };

  explicit ChoicePickerModel(std::vector<Choice> choices) : choices_(std::move(choices)) {}

  int selectionIndex() const { return selectionIndex_; }
  /// Highlights a row; others than the rows there are change nothing.
  void select(int index);
  /// Cyclic.
  void moveSelection(int delta);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 Q_SIGNALS:
  void changed();

 private:
  std::vector<Choice> choices_;
  int selectionIndex_ = 0;
};
