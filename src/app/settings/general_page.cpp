#include <QComboBox>
#include <QCoreApplication>
#include <QPushButton>

#include "app/settings/login_item_control.h"
#include "app/settings/pages.h"
#include "app/settings/service_section.h"
#include "core/ui/settings_form.h"

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

void addLoginItem(SettingsSection& section, Platform& platform) {
  auto* control = new LoginItemControl(*platform.loginItem, *platform.systemInfo);
  control->setRemark(
      section.addRow(u"Open at login"_s, u"Your shortcuts work as soon as you have logged in."_s, control));
}

void addPermissions(SettingsSection& section, WindowOpener& windows) {
  auto* show = new QPushButton(u"Show…"_s);
  show->setAccessibleName(u"Show permissions"_s);
  QObject::connect(show, &QPushButton::clicked, show, [&windows] { windows.openWindow(AppWindow::permissions); });
  section.addRow(u"Permissions"_s, u"What the system lets Vantle do."_s, show);
}

void addVersion(SettingsSection& section, WindowOpener& windows) {
  auto* news = new QPushButton(u"What's New…"_s);
  news->setAccessibleName(news->text());
  QObject::connect(news, &QPushButton::clicked, news, [&windows] { windows.openWindow(AppWindow::whatsNew); });
  section.addRow(u"Vantle %1"_s.arg(QCoreApplication::applicationVersion()).trimmed(), {}, news);
}

}  // namespace

QWidget* makeGeneralPage(AppContext& context, SettingsSelection&) {
  auto* page = new SettingsPage;
  SettingsSection* look = page->addSection(u"Appearance and start"_s);
  look->addRow(u"Appearance"_s, u"Panels, toasts and windows."_s, makeAppearanceBox(context.preferences));
  addLoginItem(*look, context.platform);
  addPermissions(*look, context.windows);
  addServiceSections(*page, context);
  SettingsSection* about = page->addSection(u"About"_s);
  addVersion(*about, context.windows);
  about->addWide(
      makeDetailLabel(u"Settings and saved commands are plain JSON files in %1."_s.arg(context.folders.vantle())));
  return page;
}
