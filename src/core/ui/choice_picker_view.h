#pragma once

#include <QWidget>

class ChoicePickerController;
class ChoicePickerModel;
class PaletteList;

/// A choice picker's card: what the choice is about, and the rows. It draws the model; clicks go to the controller.
class ChoicePickerView : public QWidget {
  Q_OBJECT

 public:
  struct Texts {
    /// The panel's name, for window lists and screen readers.
    QString title;
    /// Symbol name.
    QString symbol;
    /// What the choice is about.
    QString header;
  };

  ChoicePickerView(ChoicePickerController& controller, const Texts& texts, QWidget* parent = nullptr);

 private:
  void follow();

  ChoicePickerModel& model_;
  PaletteList* list_;
};
