#include "tools/file_drop/bulk_upload_panel.h"

#include "tools/file_drop/bulk_upload_panel_controller.h"
#include "tools/file_drop/bulk_upload_view.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kCard(480, 384);

}  // namespace

BulkUploadPanel::BulkUploadPanel(PanelWindow& native, QSettings& defaults, BulkUploadPanelController& controller)
    : StandingPanel(native, kCard, new BulkUploadView(controller), PanelPosition(defaults, "fileDrop"_L1),
                    [&controller](const KeyPress& key) { return controller.handleKey(key); }) {}
