#include <QComboBox>
#include <QPushButton>

#include "app/settings/arrange_list.h"
#include "app/settings/pages.h"
#include "app/settings/settings_form.h"

using namespace Qt::StringLiterals;

namespace {

QComboBox* makeSortBox(ToolRegistry& registry) {
  auto* box = new QComboBox;
  for (const ToolSortModeText& mode : toolSortModes()) box->addItem(QString::fromUtf16(mode.label));
  const auto follow = [box, &registry] { box->setCurrentIndex(static_cast<int>(registry.sortMode())); };
  follow();
  QObject::connect(&registry, &ToolRegistry::changed, box, follow);
  QObject::connect(box, &QComboBox::activated, box,
                   [&registry](int row) { registry.setSortMode(toolSortModes()[static_cast<std::size_t>(row)].mode); });
  return box;
}

}  // namespace

QWidget* makeLauncherPage(AppContext& context, SettingsSelection&) {
  auto* page = new SettingsPage;
  SettingsSection* order = page->addSection(u"Order"_s);
  order->addRow(u"Sort by"_s, u"How the grid is ordered — pinned tools always come first"_s,
                makeSortBox(context.registry));
  SettingsSection* grid = page->addSection(u"Arrange your grid"_s);
  grid->addWide(new ArrangeList(context.registry));
  page->addNote(
      u"Drag to reorder (switches to Manual). Pinned tools always lead the grid — and the 1–9 keys follow the order."_s);
  page->addNote(u"Double-click pins or unpins; from the keyboard ⌘↑ and ⌘↓ move a tool, ⌘P pins it."_s);
  auto* reset = new QPushButton(u"Reset Arrangement"_s);
  QObject::connect(reset, &QPushButton::clicked, reset, [&context] { context.registry.resetArrangement(); });
  SettingsSection* defaults = page->addSection({});
  defaults->addRow(u"Defaults"_s, u"Clears pins and order."_s, reset);
  reset->setAccessibleName(reset->text());
  return page;
}
