#include "tools/file_drop/upload_result_view.h"

#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>
#include <array>

#include "core/ui/primary_button.h"
#include "core/ui/settings_form.h"
#include "core/ui/symbol_label.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

using Action = BulkUploadModel::ResultAction;

constexpr int kIcon = 40;
constexpr int kTextWidth = 400;
constexpr int kTextLines = 4;

constexpr std::array kActionNames = {
    std::pair{Action::copyLink, "Copy Link"_L1},
    std::pair{Action::tryAgain, "Try Again"_L1},
    std::pair{Action::startOver, "Start Over"_L1},
};

/// Plain text in which a long word, such as a link, may break anywhere.
QString breakable(const QString& text) {
  QString broken;
  for (const QChar character : text) broken += QString(character) + QChar(0x200B);
  return broken;
}

}  // namespace

UploadResultView::UploadResultView(const BulkUploadModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      icon_(new SymbolLabel({}, kIcon)),
      title_(makeHeading({})),
      text_(makeDetailLabel({})),
      row_(new QHBoxLayout) {
  title_->setAlignment(Qt::AlignCenter);
  text_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  text_->setTextFormat(Qt::PlainText);
  text_->setFixedWidth(kTextWidth);
  text_->setMaximumHeight(kTextLines * text_->fontMetrics().lineSpacing());
  auto* hint = makeDetailLabel(u"←→ switch · ↩ select"_s);
  hint->setAlignment(Qt::AlignCenter);
  makeButtons();
  auto* column = new QVBoxLayout(this);
  column->setSpacing(Theme::kGrid);
  column->addStretch(1);
  column->addWidget(icon_, 0, Qt::AlignHCenter);
  column->addWidget(title_);
  column->addWidget(text_, 0, Qt::AlignHCenter);
  column->addSpacing(Theme::kGrid);
  column->addLayout(row_);
  column->addWidget(hint);
  column->addStretch(1);
}

void UploadResultView::follow() {
  const bool hasLink = model_.phase() == BulkUploadModel::Phase::done;
  icon_->setSymbol(hasLink ? u"checkmark.circle.fill"_s : u"xmark.octagon.fill"_s,
                   hasLink ? &Theme::success : &Theme::failure);
  title_->setText(!hasLink ? u"Not uploaded"_s : model_.copied() ? u"Link copied to clipboard"_s : u"Your link"_s);
  const QString said = hasLink          ? model_.link().toString(QUrl::FullyEncoded)
                       : model_.error() ? model_.error()->description()
                                        : QString();
  text_->setText(hasLink ? breakable(said) : said);
  text_->setAccessibleName(said);
  text_->setToolTip(said);
  followButtons();
}

void UploadResultView::makeButtons() {
  row_->setSpacing(Theme::kGrid);
  row_->addStretch(1);
  for (const auto& [action, text] : kActionNames) {
    auto* button = new PrimaryButton(text);
    button->setFocusPolicy(Qt::NoFocus);
    connect(button, &QPushButton::clicked, this, [this, chosenAction = action] { Q_EMIT chosen(chosenAction); });
    row_->addWidget(button);
    buttons_.emplace_back(action, button);
  }
  row_->addStretch(1);
}

void UploadResultView::followButtons() {
  const auto actions = model_.resultActions();
  for (const auto& [action, button] : buttons_) {
    const auto place = std::ranges::find(actions, action) - actions.begin();
    button->setVisible(place < std::ssize(actions));
    button->setProminent(place == model_.resultButtonIndex());
  }
}
