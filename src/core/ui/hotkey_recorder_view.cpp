#include "core/ui/hotkey_recorder_view.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/ui/icon.h"
#include "core/ui/key_event.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kButtonWidth = 132;
constexpr int kClearIcon = 16;

}  // namespace

HotkeyRecorderView::HotkeyRecorderView(HotkeyRecorderModel::Services services, const QString& toolID,
                                       const QString& name, QWidget* parent)
    : QWidget(parent),
      model_(std::move(services), toolID),
      name_(name),
      button_(new QPushButton(this)),
      clear_(new QToolButton(this)),
      hint_(new QLabel(this)) {
  button_->setFixedWidth(kButtonWidth);
  button_->setAutoDefault(false);
  button_->installEventFilter(this);
  setFocusProxy(button_);
  clear_->setAutoRaise(true);
  clear_->setIconSize({kClearIcon, kClearIcon});
  clear_->setToolTip(u"Remove shortcut"_s);
  clear_->setAccessibleName(u"Remove shortcut of %1"_s.arg(name));
  hint_->setFont(Theme::detailFont());
  hint_->setAlignment(Qt::AlignRight);
  // A place of its own even when empty would make every row taller; a cross that comes and goes would move the buttons.
  QSizePolicy steady = clear_->sizePolicy();
  steady.setRetainSizeWhenHidden(true);
  clear_->setSizePolicy(steady);

  auto* row = new QHBoxLayout;
  row->setSpacing(Theme::kGrid / 2);
  row->addStretch(1);
  row->addWidget(button_);
  row->addWidget(clear_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  column->addLayout(row);
  column->addWidget(hint_);
  connect(button_, &QPushButton::clicked, this, [this] { model_.start(); });
  connect(clear_, &QToolButton::clicked, this, [this] { model_.clear(); });
  connect(&model_, &HotkeyRecorderModel::changed, this, &HotkeyRecorderView::follow);
  follow();
}

void HotkeyRecorderView::follow() {
  button_->setText(model_.text());
  button_->setAccessibleName(u"Shortcut of %1: %2"_s.arg(name_, model_.text()));
  button_->setDown(model_.isRecording());
  clear_->setVisible(model_.hasBinding() && !model_.isRecording());
  clear_->setIcon(symbolPixmap(u"xmark.circle.fill"_s, kClearIcon, themeOf(*this).secondary, devicePixelRatioF()));
  hint_->setText(model_.hint());
  hint_->setVisible(!model_.hint().isEmpty());
  updateGeometry();
}

bool HotkeyRecorderView::eventFilter(QObject* watched, QEvent* event) {
  return (model_.isRecording() && handleRecordingEvent(*event)) || QWidget::eventFilter(watched, event);
}

bool HotkeyRecorderView::handleRecordingEvent(QEvent& event) {
  switch (event.type()) {
    case QEvent::ShortcutOverride:
      event.accept();
      return true;
    case QEvent::KeyPress:
      if (const auto pressed = recordedHotkey(static_cast<QKeyEvent&>(event))) model_.record(*pressed);
      return true;
    case QEvent::KeyRelease:
      return true;
    case QEvent::FocusOut:
      model_.cancel();
      return false;
    default:
      return false;
  }
}

void HotkeyRecorderView::hideEvent(QHideEvent*) { model_.cancel(); }

void HotkeyRecorderView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) follow();
  QWidget::changeEvent(event);
}
