#pragma once

#include <QRegion>

#include <functional>
#include <utility>

#include "platform/panel_window.h"

/// Plain windows; remembers who has the keyboard and lets a test take it away.
class FakePanelWindow final : public PanelWindow {
 public:
  Qt::WindowFlags windowFlags(PanelKind) const override { return Qt::Tool | Qt::FramelessWindowHint; }
  void prepare(QWindow&, PanelKind) override { ++preparations; }
  bool takeKeyboard(QWindow& window) override {
    keyboardOwner = &window;
    return true;
  }
  void releaseKeyboard(QWindow&) override { keyboardOwner = nullptr; }
  void watchKeyboardLoss(QWindow&, const QRect& card, std::function<void()> lost) override {
    watchedCard = card;
    lost_ = std::move(lost);
  }
  void stopWatching(QWindow&) override { lost_ = nullptr; }
  bool isTranslucencyAvailable() const override { return translucent; }
  bool isPointerPressed() const override { return pointerPressed; }
  void setInputRegion(QWindow&, const QRegion& region) override { inputRegion = region; }

  bool isWatched() const { return lost_ != nullptr; }
  /// The user clicks elsewhere.
  void loseKeyboard() {
    if (const auto lost = std::exchange(lost_, nullptr)) lost();
  }

  bool translucent = true;
  bool pointerPressed = false;
  int preparations = 0;
  QWindow* keyboardOwner = nullptr;
  QRect watchedCard;
  QRegion inputRegion;

 private:
  std::function<void()> lost_;
};
