#include "core/ui/connection_test.h"

#include "base/visible_text.h"
#include "core/ui/settings_form.h"

using namespace Qt::StringLiterals;

namespace {

/// Of what a service says.
constexpr qsizetype kShown = 300;

}  // namespace

QWidget* makeConnectionTest(const QString& tool, const QString& does, CheckControl::Run run) {
  auto* button = new CheckControl(tool, std::move(run), u"Test Connection"_s);
  auto* section = new SettingsSection;
  button->setRemark(section->addRow(u"Connection"_s, does, button));
  return section;
}

QString testFailure(const QString& description) { return visibleLine(description.trimmed(), kShown); }
