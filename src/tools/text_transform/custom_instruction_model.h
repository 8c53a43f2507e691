#pragma once

#include <QObject>
#include <QString>

/// What the user has written in the instruction panel. Main thread only.
class CustomInstructionModel final : public QObject {
  Q_OBJECT

 public:
  const QString& text() const { return text_; }
  void setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    Q_EMIT changed();
  }

 Q_SIGNALS:
  void changed();

 private:
  QString text_;
};
