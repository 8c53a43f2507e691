#pragma once

#include <QTextEdit>

/// A prompt to be read, selected and scrolled. Its width is that of the card.
class PromptText final : public QTextEdit {
  Q_OBJECT

 public:
  explicit PromptText(const QString& prompt, QWidget* parent = nullptr);

  /// How high the words are when laid out as here, in logical pixels.
  static double heightOf(const QString& prompt);

 Q_SIGNALS:
  /// `place` is global.
  void menuWanted(const QPoint& place);

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
};
