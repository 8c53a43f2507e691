#pragma once

#include <QWidget>

class CommandListEditor;
class CommandStore;
class FocusedCommand;
class QToolButton;

/// The tool's settings page: what the tool does, the commands, and below them the buttons that add and remove.
class FrequentCLIsSettingsView : public QWidget {
  Q_OBJECT

 public:
  FrequentCLIsSettingsView(CommandStore& store, FocusedCommand& focused, QWidget* parent = nullptr);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QWidget* makeFooter();
  void paintButtons();
  void takeFocusedCommand();

  CommandStore& store_;
  FocusedCommand& focused_;
  CommandListEditor* list_;
  QToolButton* add_;
  QToolButton* remove_;
};
