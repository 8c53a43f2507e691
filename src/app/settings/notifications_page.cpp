#include <QPushButton>
#include <QSpinBox>

#include "app/settings/pages.h"
#include "core/ui/settings_form.h"
#include "core/ui/store_switch.h"

using namespace Qt::StringLiterals;

namespace {

QSpinBox* makeDurationBox(AppPreferences& preferences) {
  auto* box = new QSpinBox;
  box->setRange(static_cast<int>(kMinimumToastDuration.count()), static_cast<int>(kMaximumToastDuration.count()));
  box->setSuffix(u" seconds"_s);
  const auto follow = [box, &preferences] { box->setValue(static_cast<int>(preferences.value().toastDuration)); };
  follow();
  QObject::connect(&preferences, &StoreBase::changed, box, follow);
  QObject::connect(box, &QSpinBox::valueChanged, box, [&preferences](int seconds) {
    preferences.update([seconds](Preferences& values) {
      // A fraction set by hand stays until the whole seconds really change.
      if (static_cast<int>(values.toastDuration) != seconds) values.toastDuration = seconds;
    });
  });
  return box;
}

void showExample(AppContext& context) {
  ToastContent content;
  content.icon = u"checkmark.circle.fill"_s;
  content.title = u"This is how a finished task looks"_s;
  content.detail = context.preferences.value().swipeToDismiss ? u"Swipe it up, click its cross, or wait."_s
                                                              : u"Click its cross, or wait."_s;
  content.completes = true;
  context.toasts.show(std::move(content), toastDuration(context.preferences.value()));
}

QPushButton* makeExampleButton(AppContext& context) {
  auto* example = new QPushButton(u"Show an Example"_s);
  example->setAccessibleName(example->text());
  QObject::connect(example, &QPushButton::clicked, example, [&context] { showExample(context); });
  return example;
}

}  // namespace

QWidget* makeNotificationsPage(AppContext& context, SettingsSelection&) {
  auto* page = new SettingsPage;
  SettingsSection* toasts = page->addSection(u"Toasts"_s);
  const auto addSwitch = [&](const QString& title, const QString& description, bool Preferences::* flag) {
    toasts->addRow(title, description, makeStoreSwitch(context.preferences, flag, title));
  };
  toasts->addRow(u"How long a toast stays"_s, u"2 to 60 seconds. Up to 10, a ring counts down."_s,
                 makeDurationBox(context.preferences));
  addSwitch(u"Swipe to dismiss"_s, u"Two fingers upward over the toast."_s, &Preferences::swipeToDismiss);
  addSwitch(u"Sound when a task is finished"_s, u"Failures and questions stay silent."_s,
            &Preferences::soundOnComplete);
  toasts->addRow(u"Try it"_s, u"With the settings above, the sound included."_s, makeExampleButton(context));
  return page;
}
