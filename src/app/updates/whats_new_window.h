#pragma once

#include "app/updates/changelog.h"
#include "app/updates/update_notice.h"
#include "core/ui/titled_window.h"

class QLabel;
class QPushButton;
class QScrollArea;
class Updater;

/// The window "What's New": after an update the versions since the earlier one, otherwise all of them.
class WhatsNewWindow : public TitledWindow {
  Q_OBJECT

 public:
  WhatsNewWindow(UpdateNotice& notice, const Updater& updater, Changelog changelog);

  /// The changelog that ships with the program.
  static Changelog shippedChangelog();

  void open() override;

 private:
  QWidget* makeHeader();
  QWidget* makeFooter(const Updater& updater);
  void fill();

  UpdateNotice& notice_;
  Changelog changelog_;
  QLabel* title_;
  QLabel* subtitle_;
  QScrollArea* versions_;
  QPushButton* done_;
};
