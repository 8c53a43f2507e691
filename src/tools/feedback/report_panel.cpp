#include "tools/feedback/report_panel.h"

#include "tools/feedback/report_panel_controller.h"
#include "tools/feedback/report_view.h"

namespace {

constexpr QSize kCard(560, 440);

}  // namespace

ReportPanel::ReportPanel(PanelWindow& native, ReportPanelController& controller, ReportView* view,
                         PanelPosition position)
    : StandingPanel(native, kCard, view, position,
                    [&controller](const KeyPress& key) { return controller.handleKey(key); }) {}
