#pragma once

#include <QImage>
#include <QWidget>

#include <vector>

/// The images that went along with a question, small and in a row.
class SentImages final : public QWidget {
  Q_OBJECT

 public:
  explicit SentImages(std::vector<QImage> thumbnails, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::vector<QImage> thumbnails_;
};
