#include "app/settings/placeholder_view.h"

#include <QVBoxLayout>

#include "core/ui/settings_form.h"

using namespace Qt::StringLiterals;

QWidget* makePlaceholderView(QWidget* parent) {
  auto* text = new QWidget;
  auto* column = new QVBoxLayout(text);
  column->setContentsMargins({});
  column->setSpacing(4);
  column->addWidget(makeHeading(u"Not built yet"_s));
  column->addWidget(
      makeDetailLabel(u"This tool comes with a later version. Its shortcut, its switch and its place in the launcher "
                      "are yours to set already; pressing the shortcut only says that it is not there."_s));
  auto* section = new SettingsSection(parent);
  section->addWide(text);
  return section;
}
