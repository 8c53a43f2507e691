#pragma once

#include "app/settings/unfolding_row.h"

class DataEraser;
class QPushButton;
class RowRemark;

/// "Delete All Data…": asks in place what it is about to do, and says why when it cannot. Escape, or going elsewhere,
/// takes the question back.
class DeleteDataRow : public QWidget {
  Q_OBJECT

 public:
  explicit DeleteDataRow(DataEraser& eraser);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  QWidget* makeQuestion();
  void ask();
  void takeBack();
  void erase();

  DataEraser& eraser_;
  QPushButton* ask_;
  QPushButton* keep_;
  QPushButton* erase_;
  RowRemark* remark_;
  UnfoldingRow* row_;
};
