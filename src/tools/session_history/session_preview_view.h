#pragma once

#include <QWidget>

#include "tools/session_history/session_preview.h"

struct Theme;

/// The first and the last prompt of the selected conversation side by side, set off by a hairline.
class SessionPreviewView final : public QWidget {
  Q_OBJECT

 public:
  explicit SessionPreviewView(QWidget* parent = nullptr);

  void setPreview(const SessionPreview& preview);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintPrompt(QPainter& painter, const QRect& area, const QString& title, const QString& prompt) const;

  SessionPreview preview_;
};
