#include "app/settings/placeholder_view.h"

#include "app/settings/settings_form.h"

using namespace Qt::StringLiterals;

QWidget* makePlaceholderView(QWidget* parent) {
  auto* section = new SettingsSection(parent);
  section->addWide(makeHeading(u"Not built yet"_s));
  section->addWide(
      makeDetailLabel(u"This tool comes with a later version. Its shortcut, its switch and its place in the launcher "
                      "are yours to set already; pressing the shortcut only says that it is not there."_s));
  return section;
}
