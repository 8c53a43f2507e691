#pragma once

#include <QWidget>

class BulkUploadPanelController;
class DropZone;
class FooterHints;
class PaletteList;
class PrimaryButton;
class QLabel;
class QPushButton;
class QStackedLayout;
class UploadProgressView;
class UploadResultView;

/// The drop window's card: where to drop, then the list, the progress and the result. It draws the model; drops and
/// clicks go to the controller. No control takes the focus: the keys are the panel's.
class BulkUploadView : public QWidget {
  Q_OBJECT

 public:
  explicit BulkUploadView(BulkUploadPanelController& controller, QWidget* parent = nullptr);

  /// Without the keyboard, the foot says how to get it.
  void setHasKeyboard(bool hasKeyboard);

 Q_SIGNALS:
  /// Something was dropped here: the user goes on here.
  void dropped();

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QWidget* makeHeader();
  QWidget* makeListPage();
  QWidget* page() const;
  void connectParts();
  void setTargeted(bool targeted);
  void follow();
  void followList();

  BulkUploadPanelController& controller_;
  QLabel* total_;
  QPushButton* clear_;
  DropZone* zone_;
  PaletteList* list_;
  QWidget* listPage_ = nullptr;
  PrimaryButton* upload_;
  UploadProgressView* progress_;
  UploadResultView* result_;
  QStackedLayout* pages_;
  FooterHints* footer_;
  bool targeted_ = false;
  bool hasKeyboard_ = true;
};
