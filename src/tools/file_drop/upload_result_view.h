#pragma once

#include <QWidget>

#include <utility>
#include <vector>

#include "tools/file_drop/bulk_upload_model.h"

class PrimaryButton;
class QHBoxLayout;
class QLabel;
class SymbolLabel;

/// The link, or what went wrong, and what can be done next. The button that Return presses is the filled one.
class UploadResultView : public QWidget {
  Q_OBJECT

 public:
  explicit UploadResultView(const BulkUploadModel& model, QWidget* parent = nullptr);

  void follow();

 Q_SIGNALS:
  void chosen(BulkUploadModel::ResultAction action);

 private:
  void makeButtons();
  void followButtons();

  const BulkUploadModel& model_;
  SymbolLabel* icon_;
  QLabel* title_;
  QLabel* text_;
  QHBoxLayout* row_;
  std::vector<std::pair<BulkUploadModel::ResultAction, PrimaryButton*>> buttons_;
};
