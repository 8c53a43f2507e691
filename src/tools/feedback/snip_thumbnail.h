#pragma once

#include <QImage>
#include <QWidget>

#include "base/job.h"

class QPushButton;

/// A small picture of one snip, with a button that takes it away.
class SnipThumbnail final : public QWidget {
  Q_OBJECT

 public:
  static constexpr QSize kSize{76, 52};

  /// Decodes `png` in the background; shows a frame until then, and for what cannot be decoded.
  explicit SnipThumbnail(const QByteArray& png, QWidget* parent = nullptr);

  /// Its place among the snips, from 1 on, for screen readers.
  void setNumber(int number);
  void setRemovable(bool removable);

 Q_SIGNALS:
  void removed();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QImage picture_;
  QPushButton* remove_;
  Job decoding_ = Job::start();
};
