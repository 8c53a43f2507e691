#include <QApplication>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "app/onboarding/onboarding_steps.h"
#include "app/permissions/permission_rows.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

/// A column that scrolls once it is too long for the window: desktops can hold many shortcuts.
QVBoxLayout* addScrollingColumn(QVBoxLayout& outer) {
  auto* area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  auto* content = new QWidget;
  area->setWidget(content);
  area->viewport()->setAutoFillBackground(false);
  content->setAutoFillBackground(false);
  outer.addWidget(area, 1);
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2 * Theme::kGrid);
  return column;
}

}  // namespace

PermissionsStep::PermissionsStep(AppContext& context, OnboardingModel& model)
    : OnboardingPage({u"hand.raised"_s, {}, {}}),
      model_(model),
      offers_(context.hotkeys, context.registry),
      systemName_(context.platform.systemInfo->systemName()) {
  content_ = addScrollingColumn(column());
  auto* section = new SettingsSection;
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    rows_[i] = new PermissionRow(model_.permissions(), kPermissionNames[i].permission,
                                 context.platform.systemInfo->systemSettings());
    section->addWide(rows_[i]);
  }
  shortcuts_ = new ShortcutsRow(model_.permissions());
  section->addWide(shortcuts_);
  content_->addWidget(section);
  content_->addStretch(1);
  connect(&model_.permissions(), &PermissionList::changed, this, &PermissionsStep::followPermissions);
  connect(&offers_, &ShortcutOffers::changed, this, &PermissionsStep::followOffers);
  followPermissions();
}

void PermissionsStep::arrive() { offers_.refresh(); }

QPushButton* PermissionsStep::defaultButton() const {
  for (const PermissionRow* row : rows_)
    if (row->button()) return row->button();
  return nullptr;
}

void PermissionsStep::followPermissions() {
  if (defaultButton())
    setTexts(u"Two permissions"_s, u"Turn Vantle on in each. This window goes on by itself."_s);
  else
    setTexts(u"What %1 allows"_s.arg(systemName_), u"This is what Vantle can do in your session."_s);
}

void PermissionsStep::followOffers() {
  shortcuts_->setTakenCount(offers_.openCount());
  SettingsSection* const before = std::exchange(offerSection_, nullptr);
  if (!offers_.offers().empty()) addOffers();
  if (!before) return;
  // The button that was pressed is in there: it lives until it has been heard.
  const bool hadFocus = before->isAncestorOf(QApplication::focusWidget());
  before->hide();
  before->deleteLater();
  if (auto* next = offerSection_ ? offerSection_->findChild<QPushButton*>() : nullptr; next && hadFocus)
    next->setFocus();
}

void PermissionsStep::addOffers() {
  offerSection_ = new SettingsSection;
  offerSection_->setAccessibleName(u"Shortcuts that other programs hold"_s);
  for (const ShortcutOffers::Offer& offer : offers_.offers()) offerSection_->addWide(makeOfferRow(offer));
  content_->insertWidget(1, offerSection_);
  // What is made last comes last with Tab, behind the window's own buttons.
  QWidget* before = rows_.back()->findChild<QPushButton*>();
  for (auto* button : offerSection_->findChildren<QPushButton*>()) {
    setTabOrder(before, button);
    before = button;
  }
}

QWidget* PermissionsStep::makeOfferRow(const ShortcutOffers::Offer& offer) {
  const QString text = offer.toolID.isEmpty() ? u"%1 belongs to another program; Vantle's icon opens it too."_s
                                              : u"%1 belongs to another program."_s;
  auto* row = new IconRow(u"exclamationmark.triangle.fill"_s, offer.name, text.arg(offer.refused.display()));
  if (offer.isAccepted) {
    row->setTile({u"checkmark"_s, {}, {}}, &Theme::success);
    row->setDetail(u"Opens with %1 now."_s.arg(offer.free->display()));
  } else if (offer.free) {
    auto* use = new QPushButton(u"Use %1"_s.arg(offer.free->display()));
    use->setAutoDefault(true);
    use->setToolTip(offer.free->spelled());
    use->setAccessibleName(u"Use %1 for %2"_s.arg(offer.free->spelled(), offer.name));
    row->addEnd(use);
    connect(use, &QPushButton::clicked, &offers_, [this, id = offer.toolID] { offers_.accept(id); });
  }
  return row;
}
