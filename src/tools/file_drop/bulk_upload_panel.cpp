#include "tools/file_drop/bulk_upload_panel.h"

#include "core/ui/theme.h"
#include "tools/file_drop/bulk_upload_panel_controller.h"
#include "tools/file_drop/bulk_upload_view.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kMargin = Theme::kPanelMargin;
constexpr QSize kCard(480, 384);

}  // namespace

BulkUploadPanel::BulkUploadPanel(PanelWindow& native, QSettings& defaults, BulkUploadPanelController& controller)
    : panel_(native, kCard + QSize(2 * kMargin, 2 * kMargin)),
      view_(new BulkUploadView(controller)),
      position_(defaults, "fileDrop"_L1) {
  panel_.setWindowTitle(view_->windowTitle());
  panel_.setContent(view_);
  panel_.setMovable(true);
  panel_.setStaysUp(true);
  panel_.setKeyHandler([&controller](const KeyPress& key) { return controller.handleKey(key); });
  connect(&panel_, &PalettePanel::moved, this, [this](QPoint origin) { position_.remember(origin); });
  connect(&panel_, &PalettePanel::becameKey, view_, [this] { view_->setHasKeyboard(true); });
  connect(&panel_, &PalettePanel::resignedKey, view_, [this] { view_->setHasKeyboard(false); });
  connect(view_, &BulkUploadView::dropped, &panel_, &PalettePanel::takeKeyboard);
}

void BulkUploadPanel::present() {
  if (!panel_.isVisible()) panel_.positionAt(position_);
  panel_.present();
}

void BulkUploadPanel::warmUp() {
  panel_.winId();
  panel_.grab();
}
