#pragma once

#include <QWidget>

#include <map>

#include "app/shortcuts/keyboard_layout_model.h"

class KeyButton;

/// Draws the keyboard. Keys that carry a shortcut are buttons of their own, all others are only painted.
class KeyboardView : public QWidget {
  Q_OBJECT

 public:
  explicit KeyboardView(KeyboardLayoutModel& model, QWidget* parent = nullptr);

  QSize sizeHint() const override;
  /// The button of a key by its place in the model's keys; null for keys that carry nothing.
  KeyButton* button(std::size_t key) const;
  /// The first one, where the keyboard is entered; null without any.
  KeyButton* firstButton() const;
  /// Rings the key of a shortcut; none ends that.
  void pointAt(std::optional<std::size_t> key);

 Q_SIGNALS:
  /// All by the place in the model's keys.
  void pointed(std::size_t key);
  void left(std::size_t key);
  void focused(std::size_t key, Qt::FocusReason reason);
  void chosen(std::size_t key);
  void opened(std::size_t key);
  void entered(std::size_t key);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void arrange();
  void follow();
  KeyButton* makeButton(std::uint32_t keyCode);
  std::optional<std::size_t> placeOf(std::uint32_t keyCode) const;
  void step(std::uint32_t keyCode, KeyboardLayoutModel::Direction direction);

  KeyboardLayoutModel& model_;
  /// By key code. A key that carries nothing any more keeps its hidden button.
  std::map<std::uint32_t, KeyButton*> buttons_;
};
