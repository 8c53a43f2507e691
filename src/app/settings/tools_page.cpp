#include <QHBoxLayout>
#include <QStackedWidget>

#include <algorithm>

#include "app/settings/pages.h"
#include "app/settings/sidebar_list.h"
#include "app/settings/tool_header_view.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kListWidth = 192;

/// The tools at the left in registration order, the chosen one's page at the right, made when first shown.
class ToolsPage final : public QWidget {
 public:
  ToolsPage(AppContext& context, SettingsSelection& selection)
      : context_(context),
        selection_(selection),
        list_(new SidebarList(u"Tools"_s, kListWidth)),
        pages_(new QStackedWidget) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(list_);
    layout->addWidget(pages_, 1);
    fillList();
    connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
      if (row >= 0) selection_.setToolID(tools().at(static_cast<std::size_t>(row))->id());
    });
    connect(&selection_, &SettingsSelection::changed, this, &ToolsPage::followSelection);
    connect(&context.registry, &ToolRegistry::changed, this, &ToolsPage::dimDisabled);
    setFocusProxy(list_);
    followSelection();
  }

 private:
  const std::vector<std::unique_ptr<Tool>>& tools() const { return context_.registry.tools(); }

  void fillList() {
    for (const auto& tool : tools()) {
      list_->addEntry(tool->name(), tool->icon());
      pages_->addWidget(new QWidget);
    }
    dimDisabled();
  }

  void dimDisabled() {
    for (int row = 0; row < list_->count(); ++row)
      list_->setDimmed(row, !context_.registry.isEnabled(tools().at(static_cast<std::size_t>(row))->id()));
  }

  void followSelection() {
    const auto chosen = std::ranges::find(tools(), selection_.toolID(), [](const auto& tool) { return tool->id(); });
    const int row = chosen == tools().end() ? 0 : static_cast<int>(std::distance(tools().begin(), chosen));
    const QSignalBlocker blocker(list_);
    list_->setCurrentRow(row);
    showPage(row);
  }

  void showPage(int row) {
    if (!made_[row]) {
      QWidget* empty = pages_->widget(row);
      pages_->insertWidget(row, makePage(*tools().at(static_cast<std::size_t>(row))));
      pages_->removeWidget(empty);
      empty->deleteLater();
      made_[row] = true;
    }
    pages_->setCurrentIndex(row);
  }

  QWidget* makePage(const Tool& tool) {
    auto* page = new SettingsPage;
    page->addWidget(new ToolHeaderView(context_, tool));
    if (QWidget* own = tool.makeSettingsView(page)) {
      own->setContentsMargins(0, Theme::kGrid, 0, 0);
      page->addWidget(own);
    }
    return page;
  }

  AppContext& context_;
  SettingsSelection& selection_;
  SidebarList* list_;
  QStackedWidget* pages_;
  std::map<int, bool> made_;
};

}  // namespace

QWidget* makeToolsPage(AppContext& context, SettingsSelection& selection) { return new ToolsPage(context, selection); }
