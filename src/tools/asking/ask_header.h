#pragma once

#include <QWidget>

#include "tools/asking/ask_model.h"

class QPushButton;
class TonedLabel;

/// The head of a conversation: what it is, whether an answer was just copied, and the button for a new one.
class AskHeader : public QWidget {
  Q_OBJECT

 public:
  AskHeader(const AskModel& model, const QString& symbol, const QString& title, QWidget* parent = nullptr);

 Q_SIGNALS:
  void copyWanted();
  void newWanted();

 private:
  void follow();

  const AskModel& model_;
  TonedLabel* copied_;
  QPushButton* copy_;
  QPushButton* new_;
};
