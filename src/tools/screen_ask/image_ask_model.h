#pragma once

#include <QImage>

#include "tools/asking/ask_model.h"

/// A conversation about one capture. Main thread only.
class ImageAskModel final : public AskModel {
  Q_OBJECT

 public:
  using AskModel::AskModel;

  /// A PNG; empty without a capture.
  const QByteArray& imagePNG() const { return imagePNG_; }
  const std::optional<QString>& pendingQuestion() const { return pending(); }
  const QImage& previewImage() const { return previewImage_; }
  /// A new capture, with a conversation of its own.
  void setCapture(const QByteArray& png);
  /// Forgets what was said; the capture stays.
  void clearConversation() { reset(); }
  /// Forgets everything.
  void clear();

 Q_SIGNALS:
  void captureChanged();

 private:
  QByteArray imagePNG_;
  QImage previewImage_;
};
