#pragma once

#include <QWidget>

#include <vector>

class GenerateImageModel;
class QHBoxLayout;
class QPushButton;

/// The images that go with the prompt; a click takes one away. The one that is to be changed wears a pencil.
class ReferenceRow final : public QWidget {
  Q_OBJECT

 public:
  explicit ReferenceRow(GenerateImageModel& model, QWidget* parent = nullptr);

  void follow();

 private:
  void makeChips(const std::vector<int>& ids);

  GenerateImageModel& model_;
  QHBoxLayout* row_;
  std::vector<int> ids_;
  bool isEdit_ = false;
  std::vector<QPushButton*> chips_;
};
