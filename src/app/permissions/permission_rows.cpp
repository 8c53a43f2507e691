#include "app/permissions/permission_rows.h"

#include <QPushButton>

#include <algorithm>
#include <array>

#include "core/ui/theme.h"
#include "core/ui/toned_label.h"

using namespace Qt::StringLiterals;

namespace {

struct Purpose {
  Permission permission;
  const char16_t* symbol;
  const char16_t* text;
};

constexpr std::array kPurposes = {
    Purpose{Permission::accessibility, u"text.cursor", u"Types your commands and copies your selection."},
    Purpose{Permission::screenRecording, u"rectangle.dashed", u"Captures the region of the screen that you draw."},
};

struct StateText {
  PermissionState state;
  const char16_t* text;
  QColor Theme::* tone;
};

constexpr std::array kStates = {
    StateText{PermissionState::granted, u"✓ Allowed", &Theme::success},
    StateText{PermissionState::notGranted, u"Not allowed", &Theme::failure},
    StateText{PermissionState::unavailable, u"Not available", &Theme::secondary},
};

QString nameOf(Permission permission) {
  return std::ranges::find(kPermissionNames, permission, &PermissionName::permission)->name;
}

/// It works, but not everywhere.
const QString kLimited = u"Limited"_s;

const Purpose& purposeOf(Permission permission) {
  return *std::ranges::find(kPurposes, permission, &Purpose::permission);
}

TonedLabel* makeState() {
  auto* label = new TonedLabel(&Theme::secondary);
  label->setFont(Theme::keyCapFont());
  return label;
}

}  // namespace

PermissionRow::PermissionRow(PermissionList& list, Permission permission, const QString& systemSettings)
    : IconRow(QString::fromUtf16(purposeOf(permission).symbol), nameOf(permission),
              QString::fromUtf16(purposeOf(permission).text)),
      list_(list),
      permission_(permission),
      state_(makeState()),
      open_(new QPushButton(u"Open %1…"_s.arg(systemSettings))) {
  open_->setAutoDefault(true);
  open_->setAccessibleName(u"Allow %1 in %2"_s.arg(nameOf(permission), systemSettings));
  addEnd(state_);
  addEnd(open_);
  connect(open_, &QPushButton::clicked, this, [this] { list_.lead(permission_); });
  connect(&list_, &PermissionList::changed, this, &PermissionRow::follow);
  follow();
}

QPushButton* PermissionRow::button() const { return open_->isHidden() ? nullptr : open_; }

void PermissionRow::follow() {
  const auto entry = std::ranges::find(list_.entries(), permission_, &PermissionList::Entry::permission);
  const auto state = std::ranges::find(kStates, entry->state, &StateText::state);
  const bool isLedThere = entry->hasPage && entry->state == PermissionState::notGranted;
  const bool isLimited = entry->state == PermissionState::granted && !entry->remedy.isEmpty();
  state_->setText(isLimited ? kLimited : QString::fromUtf16(state->text));
  state_->setTone(isLimited ? &Theme::secondary : state->tone);
  state_->setVisible(!isLedThere);
  open_->setVisible(isLedThere);
  setRemark(entry->remedy);
}

ShortcutsRow::ShortcutsRow(const PermissionList& list)
    : IconRow(u"keyboard"_s, u"Global shortcuts"_s, u"Open every tool from anywhere."_s),
      list_(list),
      state_(makeState()) {
  addEnd(state_);
  connect(&list, &PermissionList::changed, this, &ShortcutsRow::follow);
  follow();
}

void ShortcutsRow::setTakenCount(int count) {
  taken_ = count;
  follow();
}

void ShortcutsRow::follow() {
  const bool isFine = list_.shortcutsRemedy().isEmpty() && taken_ == 0;
  setRemark(list_.shortcutsRemedy());
  state_->setText(isFine ? u"✓ Ready"_s : taken_ > 0 ? u"%1 taken"_s.arg(taken_) : kLimited);
  state_->setTone(isFine ? &Theme::success : &Theme::secondary);
}
