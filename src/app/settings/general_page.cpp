#include <QComboBox>
#include <QLabel>

#include "app/settings/pages.h"
#include "app/settings/settings_form.h"

using namespace Qt::StringLiterals;

namespace {

QComboBox* makeAppearanceBox(AppPreferences& preferences) {
  auto* box = new QComboBox;
  box->addItem(u"Like the system"_s, rawValue(AppAppearance::system));
  box->addItem(u"Dark"_s, rawValue(AppAppearance::dark));
  const auto follow = [box, &preferences] {
    box->setCurrentIndex(box->findData(rawValue(preferences.value().appearance)));
  };
  follow();
  QObject::connect(&preferences, &StoreBase::changed, box, follow);
  QObject::connect(box, &QComboBox::activated, box, [box, &preferences] {
    const auto chosen = appAppearance(box->currentData().toString());
    preferences.update([&](Preferences& values) { values.appearance = chosen.value_or(values.appearance); });
  });
  return box;
}

}  // namespace

QWidget* makeGeneralPage(AppContext& context, SettingsSelection&) {
  auto* page = new SettingsPage;
  SettingsSection* look = page->addSection(u"Appearance"_s);
  look->addRow(u"Appearance"_s, u"Panels, toasts and windows."_s, makeAppearanceBox(context.preferences));
  SettingsSection* data = page->addSection(u"Data"_s);
  data->addWide(
      makeDetailLabel(u"Settings and saved commands are plain JSON files in %1."_s.arg(context.folders.vantle())));
  return page;
}
