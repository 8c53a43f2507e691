#include "app/settings/delete_data_row.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/data_eraser.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

/// A button for what cannot be taken back.
class DangerButton final : public QPushButton {
 public:
  using QPushButton::QPushButton;

 protected:
  void changeEvent(QEvent* event) override {
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) applyColor();
  }

 private:
  void applyColor() {
    const QColor wanted = themeOf(*this).failure;
    if (palette().color(QPalette::ButtonText) == wanted) return;
    QPalette colors = palette();
    colors.setColor(QPalette::ButtonText, wanted);
    setPalette(colors);
  }
};

}  // namespace

DeleteDataRow::DeleteDataRow(DataEraser& eraser)
    : eraser_(eraser),
      ask_(new QPushButton(u"Delete All Data…"_s)),
      keep_(new QPushButton(u"Keep My Data"_s)),
      erase_(new DangerButton(u"Delete Everything"_s)),
      remark_(new RowRemark(this)),
      row_(new UnfoldingRow(u"Start from nothing"_s, u"Deletes all that Vantle has kept, and starts it anew."_s, ask_,
                            makeQuestion())) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(row_);
  for (QPushButton* button : {ask_, keep_, erase_}) button->setAccessibleName(button->text());
  connect(ask_, &QPushButton::clicked, this, &DeleteDataRow::ask);
  connect(keep_, &QPushButton::clicked, this, [this] {
    takeBack();
    ask_->setFocus();
  });
  connect(erase_, &QPushButton::clicked, this, &DeleteDataRow::erase);
}

QWidget* DeleteDataRow::makeQuestion() {
  auto* question = new QWidget;
  auto* column = new QVBoxLayout(question);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(Theme::kGrid);
  column->addWidget(makeHeading(u"Delete everything? This cannot be undone."_s));
  column->addWidget(
      makeDetailLabel(u"Deleted: settings, saved commands, histories and usage counts, the install id, window "
                      u"positions, the entry that "
                      u"opens Vantle at login, and its credentials in the keychain."_s));
  column->addWidget(makeDetailLabel(u"Kept: the transcripts of your agents, and the copies that you exported."_s));
  column->addWidget(remark_);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(Theme::kGrid);
  buttons->addStretch(1);
  buttons->addWidget(keep_);
  buttons->addWidget(erase_);
  column->addLayout(buttons);
  return question;
}

void DeleteDataRow::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape || !row_->isUnfolded()) {
    QWidget::keyPressEvent(event);
    return;
  }
  takeBack();
  ask_->setFocus();
}

void DeleteDataRow::hideEvent(QHideEvent*) { takeBack(); }

void DeleteDataRow::ask() {
  remark_->showHint({});
  erase_->setEnabled(true);
  row_->unfold(true);
  ask_->hide();
  keep_->setFocus();
}

void DeleteDataRow::takeBack() {
  eraser_.cancel();
  row_->unfold(false);
  ask_->show();
}

void DeleteDataRow::erase() {
  erase_->setEnabled(false);
  keep_->setFocus();
  remark_->showHint(u"Deleting…"_s);
  eraser_.erase([this](const QString& reason) {
    remark_->showError(reason);
    erase_->setEnabled(true);
  });
}
