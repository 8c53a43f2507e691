#pragma once

#include <QWidget>

class GenerateImagePanelController;
class HistoryStrip;
class PictureView;
class SymbolLabel;
class TonedLabel;
class QLabel;
class QStackedLayout;
class QTimer;

/// The right half of the panel: the picture or what stands in its place, what can be done with it, and the history.
class ResultColumn final : public QWidget {
  Q_OBJECT

 public:
  explicit ResultColumn(GenerateImagePanelController& controller, QWidget* parent = nullptr);

  void follow();

 private:
  QWidget* makeMessage();
  QWidget* makeActions();
  void followMessage();
  void followCaption(bool isShown);

  GenerateImagePanelController& controller_;
  TonedLabel* error_;
  PictureView* picture_;
  QLabel* caption_;
  QWidget* message_ = nullptr;
  SymbolLabel* symbol_;
  QLabel* title_;
  QLabel* detail_;
  QStackedLayout* pages_;
  QWidget* actions_ = nullptr;
  HistoryStrip* strip_;
  /// Counts the seconds on the screen.
  QTimer* ticks_;
};
