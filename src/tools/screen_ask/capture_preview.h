#pragma once

#include <QWidget>

#include "tools/screen_ask/image_ask_model.h"

/// The capture that is asked about, as large as it fits.
class CapturePreview : public QWidget {
  Q_OBJECT

 public:
  explicit CapturePreview(const ImageAskModel& model, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void follow();

  const ImageAskModel& model_;
};
