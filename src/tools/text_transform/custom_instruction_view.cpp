#include "tools/text_transform/custom_instruction_view.h"

#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QStyleOption>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

#include "core/ui/control_painter.h"
#include "core/ui/panel_header.h"
#include "core/ui/primary_button.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "platform/command_key.h"
#include "tools/text_transform/custom_instruction_controller.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSide = 2 * Theme::kGrid;
constexpr int kFieldInset = 4;

}  // namespace

CustomInstructionView::CustomInstructionView(CustomInstructionController& controller, QWidget* parent)
    : QWidget(parent),
      model_(controller.model()),
      text_(new QPlainTextEdit),
      cancel_(new QPushButton(u"Cancel"_s)),
      transform_(new PrimaryButton(u"Transform"_s)) {
  setWindowTitle(u"Custom transform"_s);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, kSide);
  column->setSpacing(0);
  column->addWidget(makePanelHeader(u"square.and.pencil"_s, windowTitle()));
  column->addWidget(makeField(), 1);
  column->addSpacing(Theme::kGrid + Theme::kGrid / 2);
  column->addWidget(makeFoot());
  connect(text_, &QPlainTextEdit::textChanged, this, [this] { model_.setText(text_->toPlainText()); });
  connect(&model_, &CustomInstructionModel::changed, this, &CustomInstructionView::follow);
  connect(cancel_, &QPushButton::clicked, this, [&controller] { controller.cancel(); });
  connect(transform_, &QPushButton::clicked, this, [&controller] { controller.submit(); });
}

QWidget* CustomInstructionView::makeField() {
  text_->setPlaceholderText(u"Describe what to do with the selected text."_s);
  text_->setAccessibleName(text_->placeholderText());
  text_->setFont(Theme::rowFont());
  // A menu would take the keyboard, and with it the panel.
  text_->setContextMenuPolicy(Qt::NoContextMenu);
  // The field around it is painted here, round and with the ring of the focus.
  text_->setFrameShape(QFrame::NoFrame);
  text_->viewport()->setAutoFillBackground(false);
  text_->installEventFilter(this);
  auto* field = new QWidget;
  auto* inset = new QVBoxLayout(field);
  inset->setContentsMargins(kSide + kFieldInset, kFieldInset, kSide + kFieldInset, kFieldInset);
  inset->addWidget(text_);
  return field;
}

QWidget* CustomInstructionView::makeFoot() {
  cancel_->setAccessibleName(u"Cancel the transform"_s);
  transform_->setAccessibleName(u"Transform the selected text"_s);
  auto* foot = new QWidget;
  auto* row = new QHBoxLayout(foot);
  row->setContentsMargins(kSide, 0, kSide, 0);
  row->setSpacing(Theme::kGrid);
  row->addWidget(makeDetailLabel(keyText(u"⌘↩ transform · esc cancel"_s)), 1);
  row->addWidget(cancel_);
  row->addWidget(transform_);
  return foot;
}

void CustomInstructionView::focusText() { text_->setFocus(); }

void CustomInstructionView::moveFocus(bool backwards) {
  const std::array<QWidget*, 3> stops{text_, cancel_, transform_};
  const auto here = std::ranges::find_if(stops, &QWidget::hasFocus) - stops.begin();
  const auto count = std::ssize(stops);
  stops[static_cast<std::size_t>((here + (backwards ? count - 1 : 1)) % count)]->setFocus();
}

void CustomInstructionView::follow() {
  if (text_->toPlainText() != model_.text()) text_->setPlainText(model_.text());
}

bool CustomInstructionView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusOut || event->type() == QEvent::FocusIn) update();
  return QWidget::eventFilter(watched, event);
}

void CustomInstructionView::paintEvent(QPaintEvent*) {
  QStyleOption option;
  option.initFrom(text_);
  option.rect =
      QRect(text_->mapTo(this, QPoint()), text_->size()).adjusted(-kFieldInset, -kFieldInset, kFieldInset, kFieldInset);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  control::paintField(painter, option, themeOf(*this));
}
