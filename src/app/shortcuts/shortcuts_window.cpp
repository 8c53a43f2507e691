#include "app/shortcuts/shortcuts_window.h"

#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

#include "app/shortcuts/key_button.h"
#include "app/shortcuts/keyboard_view.h"
#include "app/shortcuts/shortcut_list.h"
#include "app/shortcuts/shortcut_popover.h"
#include "core/ui/footer_hints.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Time to get from a key to its popover.
constexpr auto kPointerGrace = 220ms;

bool isByKeyboard(Qt::FocusReason reason) { return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason; }

void run(AppContext& context, AppAction action) {
  switch (action) {
    case AppAction::openSettings:
      context.settingsOpener.openSettings();
      return;
    case AppAction::openToolSettings:
      context.settingsOpener.openSettings(SettingsTab::tools);
      return;
    case AppAction::openShortcutSettings:
      context.settingsOpener.openSettings(SettingsTab::shortcuts);
      return;
    case AppAction::toggleLauncher:
      context.launcher.showLauncher({});
      return;
  }
}

}  // namespace

ShortcutsWindow::ShortcutsWindow(AppContext& context, ModifierWatch::Query query)
    : TitledWindow(u"Keyboard Shortcuts"_s),
      context_(context),
      model_(context.shortcutSources(), *context.platform.keyLegends),
      modifiers_(*this, std::move(query)),
      keyboard_(new KeyboardView(model_)),
      list_(new ShortcutList(model_)),
      popover_(nullptr) {
  arrange();
  popover_ = new ShortcutPopover(this);
  pointerGone_.setSingleShot(true);
  pointerGone_.setInterval(kPointerGrace);
  connect(&pointerGone_, &QTimer::timeout, this, [this] {
    if (!stays_ && !popover_->hasKeyboard()) hidePopover();
  });
  connect(&modifiers_, &ModifierWatch::changed, &model_, &KeyboardLayoutModel::setHeld);
  connect(&model_, &KeyboardLayoutModel::changed, this, &ShortcutsWindow::followModel);
  followKeyboard();
  followList();
  followPopover();
  context_.hotkeys.setShortcutsWindow(this);
}

ShortcutsWindow::~ShortcutsWindow() { context_.hotkeys.setShortcutsWindow(nullptr); }

void ShortcutsWindow::arrange() {
  auto* content = new QVBoxLayout;
  content->setContentsMargins(3 * Theme::kGrid, 2 * Theme::kGrid, 3 * Theme::kGrid, 2 * Theme::kGrid);
  content->setSpacing(2 * Theme::kGrid);
  content->addWidget(
      makeDetailLabel(u"Hold modifier keys to see what they reach. Point at a key to see what it does."_s));
  auto* card = new SettingsSection;
  card->addWide(keyboard_);
  content->addWidget(card);
  content->addWidget(list_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addLayout(content);
  layout->addWidget(new FooterHints({{{u"←"_s, u"↑"_s, u"↓"_s, u"→"_s}, u"move"_s},
                                     {{u"↩"_s}, u"open"_s},
                                     {{u"Space"_s}, u"details"_s},
                                     {{u"esc"_s}, u"close"_s}}));
}

void ShortcutsWindow::followKeyboard() {
  connect(keyboard_, &KeyboardView::pointed, this, [this](std::size_t key) {
    if (!popover_->hasKeyboard()) tell(entryOn(key), false);
  });
  connect(keyboard_, &KeyboardView::left, this, [this] { pointerGone_.start(); });
  connect(keyboard_, &KeyboardView::chosen, this, [this](std::size_t key) { tell(entryOn(key), true); });
  connect(keyboard_, &KeyboardView::focused, this, [this](std::size_t key, Qt::FocusReason reason) {
    if (isByKeyboard(reason)) tell(entryOn(key), true);
  });
  connect(keyboard_, &KeyboardView::opened, this, [this](std::size_t key) { start(entryOn(key)); });
  connect(keyboard_, &KeyboardView::entered, this, [this](std::size_t key) { enterPopover(entryOn(key)); });
}

void ShortcutsWindow::followList() {
  connect(list_, &ShortcutList::pointed, this, [this](std::size_t entry) { keyboard_->pointAt(model_.keyOf(entry)); });
  connect(list_, &ShortcutList::left, this, [this] { keyboard_->pointAt({}); });
  connect(list_, &ShortcutList::chosen, this, [this](std::size_t entry) { tell(entry, true); });
  connect(list_, &ShortcutList::focused, this, [this](std::size_t entry, Qt::FocusReason reason) {
    if (isByKeyboard(reason)) tell(entry, true);
  });
  connect(list_, &ShortcutList::opened, this, &ShortcutsWindow::start);
  connect(list_, &ShortcutList::entered, this, &ShortcutsWindow::enterPopover);
}

void ShortcutsWindow::followPopover() {
  connect(popover_, &ShortcutPopover::pointed, &pointerGone_, &QTimer::stop);
  connect(popover_, &ShortcutPopover::left, this, [this] { pointerGone_.start(); });
  connect(popover_, &ShortcutPopover::opened, this, [this] {
    if (told_) start(*told_);
  });
  connect(popover_, &ShortcutPopover::changeWanted, this, [this] {
    const QString toolID = popover_->entry().toolID;
    hidePopover();
    context_.settingsOpener.openToolSettings(toolID);
  });
}

void ShortcutsWindow::open() {
  if (!isVisible()) {
    layout()->activate();
    if (KeyButton* first = keyboard_->firstButton()) first->setFocus(Qt::OtherFocusReason);
  }
  TitledWindow::open();
}

bool ShortcutsWindow::closeIfVisible() {
  if (!isVisible() || isMinimized()) return false;
  modifiers_.stop();
  close();
  return true;
}

void ShortcutsWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape || !popover_->hasKeyboard()) return TitledWindow::keyPressEvent(event);
  hidePopover();
}

void ShortcutsWindow::mousePressEvent(QMouseEvent*) { hidePopover(); }

void ShortcutsWindow::showEvent(QShowEvent*) { model_.followLayout(true); }

void ShortcutsWindow::hideEvent(QHideEvent*) {
  hidePopover();
  model_.followLayout(false);
}

void ShortcutsWindow::tell(std::size_t entry, bool stays) {
  pointerGone_.stop();
  told_ = entry;
  stays_ = stays;
  const QWidget* anchor = anchorOf(entry);
  popover_->setEntry(model_.entries()[entry], model_.remarks(entry));
  popover_->showAt({anchor->mapTo(this, QPoint()), anchor->size()});
}

void ShortcutsWindow::hidePopover() {
  pointerGone_.stop();
  // Hiding what has the keyboard would send it on, to a key that tells about itself then.
  if (told_ && popover_->hasKeyboard()) anchorOf(*told_)->setFocus(Qt::OtherFocusReason);
  told_.reset();
  popover_->hide();
}

void ShortcutsWindow::followModel() {
  if (told_) tell(*told_, stays_);
}

void ShortcutsWindow::enterPopover(std::size_t entry) {
  tell(entry, true);
  popover_->enter();
}

void ShortcutsWindow::start(std::size_t entry) {
  // A copy: closing the window may be the end of it.
  const ShortcutEntry started = model_.entries()[entry];
  context_.hotkeys.handOver([&context = context_, started] {
    if (started.isApplication())
      run(context, started.action);
    else
      context.registry.summon(started.toolID);
  });
}

std::size_t ShortcutsWindow::entryOn(std::size_t key) const {
  const auto& drawn = model_.keys()[key];
  return model_.entryOf(drawn).value_or(drawn.entries.front());
}

QWidget* ShortcutsWindow::anchorOf(std::size_t entry) const {
  const auto key = model_.keyOf(entry);
  if (!key) return list_->row(entry);
  return keyboard_->button(*key);
}
