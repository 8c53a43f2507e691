#include "app/settings/tool_disclosure_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

#include "core/tools/tool_disclosure.h"
#include "core/ui/icon.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

namespace {

constexpr int kSymbol = 18;
constexpr int kNameColumn = 136;

/// A symbol in the colour of secondary text.
class Symbol final : public QWidget {
 public:
  explicit Symbol(const QString& name) : name_(name) { setFixedSize(kSymbol, kSymbol); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    paintSymbol(painter, name_, rect(), themeOf(*this).secondary);
  }

 private:
  QString name_;
};

QWidget* makeRow(const ToolInfo& tool, const SystemInfo& system) {
  auto* name = new QLabel(tool.name);
  name->setFont(Theme::rowFont());
  name->setMinimumWidth(kNameColumn);
  QLabel* text = makeDetailLabel(disclosure(tool, system));
  auto* row = new QWidget;
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(3 * Theme::kGrid / 2);
  line->addWidget(new Symbol(tool.icon), 0, Qt::AlignTop);
  line->addWidget(name, 0, Qt::AlignTop);
  line->addWidget(text, 1);
  return row;
}

}  // namespace

void addToolDisclosures(SettingsSection& section, const SystemInfo& system) {
  for (const ToolInfo& tool : toolTable()) section.addWide(makeRow(tool, system));
}
