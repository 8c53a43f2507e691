#include "app/settings/shortcut_setting_row.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "app/settings/shortcut_controls.h"
#include "core/tools/shortcut_entry.h"
#include "core/ui/icon_tile_view.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

ShortcutSettingRow::ShortcutSettingRow(AppContext& context, const Tool& tool, QWidget* parent)
    : QWidget(parent),
      context_(context),
      tool_(tool),
      obstacle_(makeDetailLabel({})),
      offer_(new QPushButton),
      reset_(makeReset()),
      recorder_(makeRecorder(context, tool)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(Theme::kGrid);
  row->addWidget(new IconTileView({.symbol = tool.icon(), .monogram = {}, .color = {}}), 0, Qt::AlignTop);
  row->addWidget(makeTexts(), 1);
  row->addWidget(reset_, 0, Qt::AlignTop);
  row->addWidget(recorder_, 0, Qt::AlignTop);
  setTabOrder(offer_, reset_);
  setTabOrder(reset_, recorder_);
  connect(offer_, &QPushButton::clicked, this, [this] {
    recorder_->setFocus();
    if (offered_) context_.hotkeys.setHotkey(offered_, tool_.id());
  });
  connect(&context.hotkeys, &HotkeyCenter::changed, this, &ShortcutSettingRow::follow);
  follow();
}

QWidget* ShortcutSettingRow::makeTexts() {
  auto* name = new QLabel(tool_.name());
  name->setFont(Theme::rowFont());
  name->setMinimumHeight(Theme::kIconTile);
  auto* texts = new QWidget;
  auto* column = new QVBoxLayout(texts);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(Theme::kGrid / 2);
  column->addWidget(name);
  column->addWidget(obstacle_);
  column->addWidget(offer_, 0, Qt::AlignLeft);
  return texts;
}

QPushButton* ShortcutSettingRow::makeReset() {
  auto* reset = new QPushButton(u"Reset"_s);
  reset->setAccessibleName(u"Reset shortcut of %1"_s.arg(tool_.name()));
  reset->setToolTip(u"Back to %1"_s.arg(tool_.defaultHotkey().display()));
  // Its place stays free, or the name would be wrapped anew each time it comes and goes.
  QSizePolicy steady = reset->sizePolicy();
  steady.setRetainSizeWhenHidden(true);
  reset->setSizePolicy(steady);
  connect(reset, &QPushButton::clicked, this, [this] {
    // The button is about to go, and the focus would jump to another row.
    recorder_->setFocus();
    context_.hotkeys.resetHotkey(tool_.id());
  });
  return reset;
}

void ShortcutSettingRow::follow() {
  const ShortcutSources sources = context_.shortcutSources();
  obstacle_->setText(shortcutObstacle(sources, tool_.id()));
  obstacle_->setVisible(!obstacle_->text().isEmpty());
  offered_ = isTakenElsewhere(sources, tool_.id()) ? context_.hotkeys.freeHotkey() : std::nullopt;
  offer_->setVisible(offered_.has_value());
  if (offered_) {
    offer_->setText(u"Use %1"_s.arg(offered_->display()));
    offer_->setAccessibleName(u"Use %1 for %2"_s.arg(offered_->spelled(), tool_.name()));
  }
  reset_->setVisible(context_.hotkeys.isRebound(tool_.id()));
}
