#include <QHBoxLayout>

#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "tools/feedback/feedback_panel_controller.h"
#include "tools/feedback/pill_button.h"
#include "tools/feedback/report_view.h"

using namespace Qt::StringLiterals;

CategoryPills::CategoryPills(FeedbackPanelController& controller, QWidget* parent) : QWidget(parent) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins({});
  row->setSpacing(Theme::kGrid);
  FeedbackModel& model = controller.model();
  for (const FeedbackCategoryInfo& each : feedbackCategories()) {
    auto* pill = new PillButton(each.symbol, each.label);
    // Only the model says which one is chosen.
    const auto follow = [pill, &model, category = each.category] {
      pill->setChecked(model.category() == category);
      pill->setEnabled(model.isEditable());
    };
    connect(&model, &ReportModel::changed, pill, follow);
    connect(pill, &QPushButton::clicked, &controller, [&controller, category = each.category, follow] {
      controller.select(category);
      follow();
    });
    follow();
    row->addWidget(pill);
  }
  auto* hint = makeDetailLabel(u"(⇥ to switch)"_s);
  hint->setWordWrap(false);
  row->addWidget(hint);
  row->addStretch(1);
}
