#include "tools/file_drop/upload_progress_view.h"

#include <QPushButton>
#include <QVBoxLayout>

#include <cmath>

#include "core/ui/progress_line.h"
#include "core/ui/settings_form.h"
#include "core/ui/symbol_label.h"
#include "core/ui/theme.h"
#include "tools/file_drop/bulk_upload_model.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kIcon = 40;
constexpr int kLineWidth = 320;

}  // namespace

UploadProgressView::UploadProgressView(const BulkUploadModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      title_(makeHeading({})),
      line_(new ProgressLine(u"Progress"_s)),
      share_(makeDetailLabel({})) {
  title_->setAlignment(Qt::AlignCenter);
  share_->setAlignment(Qt::AlignCenter);
  line_->setFixedWidth(kLineWidth);
  auto* cancel = new QPushButton(u"Cancel"_s);
  cancel->setFocusPolicy(Qt::NoFocus);
  connect(cancel, &QPushButton::clicked, this, &UploadProgressView::cancelled);
  auto* column = new QVBoxLayout(this);
  column->setSpacing(Theme::kGrid);
  column->addStretch(1);
  column->addWidget(new SymbolLabel(u"square.and.arrow.up.on.square.fill"_s, kIcon), 0, Qt::AlignHCenter);
  column->addWidget(title_);
  column->addWidget(line_, 0, Qt::AlignHCenter);
  column->addWidget(share_);
  column->addSpacing(Theme::kGrid);
  column->addWidget(cancel, 0, Qt::AlignHCenter);
  column->addStretch(1);
}

void UploadProgressView::follow() {
  title_->setText(model_.phase() == BulkUploadModel::Phase::zipping ? u"Zipping…"_s : u"Uploading…"_s);
  line_->setFraction(model_.progress());
  const QString percent = u"%1 %"_s.arg(static_cast<int>(std::floor(100 * model_.progress())));
  share_->setText(summary(model_) + u" · "_s + percent);
}
