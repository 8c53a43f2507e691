#include "tools/frequent_clis/command_row_editor.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>

#include <initializer_list>
#include <limits>
#include <utility>

#include "base/visible_text.h"
#include "core/ui/theme.h"
#include "core/ui/toggle_switch.h"
#include "tools/frequent_clis/icon_picker_grid.h"
#include "tools/frequent_clis/tile_button.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kGripWidth = 20;
constexpr int kToolTipLength = 400;
constexpr auto kSwitchText = "Press Return after inserting (insert-and-run)"_L1;
constexpr auto kSwitchedOnNote = "Presses Return after inserting"_L1;

QLineEdit* makeField(const QString& name, const QFont& font) {
  auto* field = new QLineEdit;
  field->setFont(font);
  field->setPlaceholderText(name);
  field->setAccessibleName(name);
  // The default limit would cut long commands off.
  field->setMaxLength(std::numeric_limits<int>::max());
  return field;
}

/// Leaves the cursor alone where the field shows that text already.
void setText(QLineEdit& field, const QString& text) {
  if (field.text() == text) return;
  field.setText(text);
  field.setCursorPosition(0);
}

/// Two columns of dots: here the row can be taken hold of.
void paintGrip(QPainter& painter, const QRectF& area, const QColor& color) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  for (const double x : {-2.5, 2.5})
    for (const double y : {-5.0, 0.0, 5.0}) painter.drawEllipse(area.center() + QPointF(x, y), 1.25, 1.25);
}

}  // namespace

CommandRowEditor::CommandRowEditor(const CLICommand& command, QWidget* parent)
    : QWidget(parent),
      tile_(new TileButton),
      title_(makeField(u"Title"_s, Theme::rowFont())),
      text_(makeField(u"Command"_s, Theme::monospacedFont())),
      pressReturn_(new ToggleSwitch(kSwitchText)),
      caption_(new QLabel) {
  build();
  styleFields();
  connectFields();
  setCommand(command);
}

void CommandRowEditor::build() {
  setCursor(Qt::OpenHandCursor);
  tile_->setCursor(Qt::ArrowCursor);
  pressReturn_->setCursor(Qt::ArrowCursor);
  pressReturn_->setToolTip(kSwitchText);
  caption_->setFont(Theme::detailFont());
  caption_->setForegroundRole(QPalette::PlaceholderText);
  caption_->setAttribute(Qt::WA_TransparentForMouseEvents);

  auto* switchLine = new QHBoxLayout;
  switchLine->setContentsMargins(6, 2, 0, 0);
  switchLine->setSpacing(Theme::kGrid);
  switchLine->addWidget(pressReturn_);
  switchLine->addWidget(caption_, 1);
  auto* fields = new QVBoxLayout;
  fields->setSpacing(0);
  fields->addWidget(title_);
  fields->addWidget(text_);
  fields->addLayout(switchLine);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kGripWidth, Theme::kGrid, Theme::kGrid, Theme::kGrid);
  row->addWidget(tile_, 0, Qt::AlignTop);
  row->addLayout(fields, 1);
}

void CommandRowEditor::connectFields() {
  for (QWidget* control : std::initializer_list<QWidget*>{tile_, title_, text_, pressReturn_})
    control->installEventFilter(this);
  connect(tile_, &TileButton::clicked, this, &CommandRowEditor::openIconPicker);
  connect(title_, &QLineEdit::textEdited, this,
          [this](const QString& text) { edit([&](CLICommand& command) { command.title = text; }); });
  connect(text_, &QLineEdit::textEdited, this,
          [this](const QString& text) { edit([&](CLICommand& command) { command.command = text; }); });
  connect(pressReturn_, &ToggleSwitch::clicked, this,
          [this](bool on) { edit([&](CLICommand& command) { command.pressReturn = on; }); });
}

template <class Change>
void CommandRowEditor::edit(Change change) {
  CLICommand next = command_;
  change(next);
  Q_EMIT edited(next);
}

void CommandRowEditor::setCommand(const CLICommand& command) {
  command_ = command;
  setAccessibleName(command.title);
  setText(*title_, command.title);
  setText(*text_, command.command);
  pressReturn_->setChecked(command.pressReturn);
  caption_->setText(command.pressReturn ? kSwitchedOnNote : kSwitchText);
  text_->setToolTip(visibleLine(command.command, kToolTipLength));
  tile_->setIcon(command.shownIcon());
}

void CommandRowEditor::setSelected(bool selected) {
  selected_ = selected;
  update();
}

void CommandRowEditor::setCarried(bool carried) {
  isCarried_ = carried;
  setCursor(carried ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
  if (carried)
    raise();
  else
    grip_.reset();
  update();
}

std::optional<CommandRowEditor::Field> CommandRowEditor::focusedField() const {
  if (title_->hasFocus()) return Field::title;
  if (text_->hasFocus()) return Field::command;
  return std::nullopt;
}

void CommandRowEditor::focusField(Field field) {
  QLineEdit* focused = field == Field::title ? title_ : text_;
  focused->end(false);
  focused->setFocus(Qt::OtherFocusReason);
}

void CommandRowEditor::focusForNaming() {
  focusField(Field::title);
  title_->selectAll();
}

QWidget* CommandRowEditor::continueTabOrder(QWidget* previous) {
  for (QWidget* control : std::initializer_list<QWidget*>{tile_, title_, text_, pressReturn_}) {
    if (previous) setTabOrder(previous, control);
    previous = control;
  }
  return previous;
}

void CommandRowEditor::openIconPicker() {
  auto* picker = new IconPickerGrid(command_.shownIcon().id, this);
  connect(picker, &IconPickerGrid::picked, this,
          [this](const QString& id) { edit([&](CLICommand& command) { command.icon = id; }); });
  picker->popupAt(*tile_);
}

void CommandRowEditor::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF ground = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
  if (isCarried_ || selected_) {
    painter.setPen(QPen(selected_ ? theme.accent : theme.hairline, 1));
    painter.setBrush(isCarried_ ? theme.card : theme.hover);
    painter.drawRoundedRect(ground, Theme::kRowRadius, Theme::kRowRadius);
  }
  paintGrip(painter, QRectF(0, 0, kGripWidth, height()), theme.switchOff);
}

void CommandRowEditor::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) styleFields();
  QWidget::changeEvent(event);
}

/// The fields look like text until the pointer or the focus is on them.
void CommandRowEditor::styleFields() {
  const Theme& theme = themeOf(*this);
  const QString style =
      u"QLineEdit { background: transparent; border: 1px solid transparent; border-radius: 6px; padding: 2px 5px }"
      "QLineEdit:hover { border-color: %1 }"
      "QLineEdit:focus { background: %2; border-color: %3 }"_s.arg(theme.switchOff.name(), theme.card.name(),
                                                                   theme.accent.name());
  for (QLineEdit* field : {title_, text_})
    if (field->styleSheet() != style) field->setStyleSheet(style);
}

bool CommandRowEditor::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) Q_EMIT activated();
  // Up and down walk through the list, though in some systems' text fields they mean its ends.
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Up || key == Qt::Key_Down) return QCoreApplication::sendEvent(parentWidget(), event);
  }
  return QWidget::eventFilter(watched, event);
}

void CommandRowEditor::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  grip_ = event->position().toPoint();
  Q_EMIT activated();
}

void CommandRowEditor::mouseMoveEvent(QMouseEvent* event) {
  if (!grip_) return;
  const QPoint offset = event->position().toPoint() - *grip_;
  if (!isCarried_ && offset.manhattanLength() < QApplication::startDragDistance()) return;
  if (!isCarried_) setCarried(true);
  Q_EMIT carried(offset);
}

void CommandRowEditor::mouseReleaseEvent(QMouseEvent*) {
  grip_.reset();
  if (!isCarried_) return;
  setCarried(false);
  Q_EMIT dropped();
}
