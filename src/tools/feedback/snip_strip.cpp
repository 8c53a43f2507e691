#include "tools/feedback/snip_strip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "tools/feedback/report_panel_controller.h"
#include "tools/feedback/snip_thumbnail.h"

using namespace Qt::StringLiterals;

SnipStrip::SnipStrip(ReportPanelController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      add_(new QPushButton(u"Add Snip"_s)),
      hint_(makeDetailLabel({})),
      row_(new QHBoxLayout(this)) {
  add_->setFocusPolicy(Qt::NoFocus);
  add_->setToolTip(ReportTexts::snipHelp());
  add_->setAccessibleDescription(ReportTexts::snipHelp());
  connect(add_, &QPushButton::clicked, &controller_, &ReportPanelController::addSnip);
  setFixedHeight(SnipThumbnail::kSize.height());
  row_->setContentsMargins({});
  row_->setSpacing(Theme::kGrid);
  row_->addWidget(add_);
  row_->addWidget(hint_, 1);
}

void SnipStrip::follow() {
  const ReportModel& model = controller_.model();
  const auto& snips = model.snips();
  std::erase_if(thumbnails_, [&snips](const auto& entry) {
    const bool isGone = std::ranges::find(snips, entry.first, &FeedbackSnip::id) == snips.end();
    if (!isGone) return false;
    entry.second->hide();
    entry.second->deleteLater();
    return true;
  });
  for (std::size_t place = 0; place < snips.size(); ++place) {
    SnipThumbnail*& thumbnail = thumbnails_[snips[place].id];
    if (!thumbnail) {
      thumbnail = new SnipThumbnail(snips[place].png);
      connect(thumbnail, &SnipThumbnail::removed, &controller_,
              [this, id = snips[place].id] { controller_.model().removeSnip(id); });
      row_->insertWidget(static_cast<int>(place), thumbnail);
    }
    thumbnail->setNumber(static_cast<int>(place) + 1);
    thumbnail->setRemovable(model.isEditable());
  }
  const bool isFull = snips.size() == ReportModel::kMostSnips;
  add_->setVisible(!isFull);
  add_->setEnabled(model.canAddSnip());
  hint_->setText(isFull ? controller_.texts().enoughSnips : controller_.texts().snipHint);
}
