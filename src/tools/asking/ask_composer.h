#pragma once

#include <QWidget>

#include "tools/asking/ask_model.h"

class QHBoxLayout;
class QLabel;
class QuestionField;
class QToolButton;
class QVBoxLayout;

/// The box at the foot of a conversation: the question's field, a hint below it, and room for buttons beside the hint.
class AskComposer : public QWidget {
  Q_OBJECT

 public:
  explicit AskComposer(AskModel& model, QWidget* parent = nullptr);

  QuestionField& field() { return *field_; }
  void setHint(const QString& hint);
  /// Above the field.
  void addAbove(QWidget* widget);
  /// Where the keyboard stops, in reading order.
  std::vector<QWidget*> stops() const;
  QToolButton* addButton(const QString& symbol, const QString& name, const QString& help);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void drawIcons();

  QuestionField* field_;
  QLabel* hint_;
  QHBoxLayout* row_;
  QVBoxLayout* column_;
  QWidget* above_ = nullptr;
  std::vector<std::pair<QToolButton*, QString>> buttons_;
};
