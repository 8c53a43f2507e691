#include "tools/generate_image/result_column.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedLayout>
#include <QTimer>
#include <QVBoxLayout>

#include <array>

#include "base/clock.h"
#include "base/visible_text.h"
#include "core/ui/settings_form.h"
#include "core/ui/symbol_label.h"
#include "core/ui/theme.h"
#include "core/ui/toned_label.h"
#include "platform/command_key.h"
#include "tools/generate_image/generate_image_panel_controller.h"
#include "tools/generate_image/history_strip.h"
#include "tools/generate_image/picture_view.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Controller = GenerateImagePanelController;

constexpr int kIcon = 40;
constexpr int kTextWidth = 380;
constexpr int kTextLines = 3;
constexpr int kCaptionWidth = 540;
constexpr qsizetype kShownPrompt = 300;

struct Action {
  const char16_t* text;
  const char16_t* tip;
  void (Controller::*run)();
};

constexpr std::array kActions = {
    Action{u"Copy", u"Copy the image (⌘C)", &Controller::copyShown},
    Action{u"Save…", u"Save the image as a file (⇧⌘S)", &Controller::saveShown},
    Action{u"Regenerate", u"Generate it once more (⌘R)", &Controller::regenerate},
    Action{u"Edit", u"Say what should change in it (⌘E)", &Controller::editShown},
};

QLabel* centred(QLabel* label) {
  label->setAlignment(Qt::AlignCenter);
  return label;
}

/// What an image of the history was made from: the prompt beside it is the next one's.
QString captionOf(const ShownImage& shown) {
  const QString prompt = visibleLine(shown.request.prompt, kShownPrompt);
  const auto references = shown.request.references.size();
  return references == 0 ? prompt
                         : prompt + (references == 1 ? u" · from 1 image"_s : u" · from %1 images"_s.arg(references));
}

QString seconds(std::chrono::steady_clock::duration time) {
  return u"%1 s"_s.arg(std::chrono::duration_cast<std::chrono::seconds>(time).count());
}

}  // namespace

ResultColumn::ResultColumn(GenerateImagePanelController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      error_(new TonedLabel(&Theme::failure)),
      picture_(new PictureView(controller.model(),
                               [&controller](const QString& id) {
                                 const QString path = controller.history().path(id);
                                 return !id.isEmpty() && QFileInfo(path).isFile() ? path : QString();
                               })),
      caption_(centred(makeDetailLabel({}))),
      symbol_(new SymbolLabel(u"sparkles"_s, kIcon)),
      title_(centred(makeHeading({}))),
      detail_(centred(makeDetailLabel({}))),
      pages_(new QStackedLayout),
      strip_(new HistoryStrip(controller)),
      ticks_(new QTimer(this)) {
  caption_->setWordWrap(false);
  caption_->setTextFormat(Qt::PlainText);
  error_->setWordWrap(true);
  error_->setTextFormat(Qt::PlainText);
  error_->setFont(Theme::detailFont());
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  column->addWidget(error_);
  column->addLayout(pages_, 1);
  column->addWidget(caption_);
  column->addWidget(makeActions());
  column->addWidget(strip_);
  pages_->addWidget(picture_);
  pages_->addWidget(makeMessage());
  ticks_->setInterval(1s);
  connect(ticks_, &QTimer::timeout, this, &ResultColumn::followMessage);
}

QWidget* ResultColumn::makeMessage() {
  message_ = new QWidget;
  detail_->setFixedWidth(kTextWidth);
  // A text that grows while it is shown must not be cut.
  detail_->setFixedHeight(kTextLines * detail_->fontMetrics().lineSpacing());
  detail_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  auto* column = new QVBoxLayout(message_);
  column->setSpacing(Theme::kGrid);
  column->addStretch(1);
  column->addWidget(symbol_, 0, Qt::AlignHCenter);
  column->addWidget(title_);
  column->addWidget(detail_, 0, Qt::AlignHCenter);
  column->addStretch(1);
  return message_;
}

QWidget* ResultColumn::makeActions() {
  actions_ = new QWidget;
  auto* row = new QHBoxLayout(actions_);
  row->setContentsMargins({});
  row->setSpacing(Theme::kGrid);
  row->addStretch(1);
  for (const Action& action : kActions) {
    auto* button = new QPushButton(QString::fromUtf16(action.text));
    button->setFocusPolicy(Qt::NoFocus);
    button->setToolTip(keyText(QString::fromUtf16(action.tip)));
    connect(button, &QPushButton::clicked, &controller_, action.run);
    row->addWidget(button);
  }
  row->addStretch(1);
  return actions_;
}

void ResultColumn::follow() {
  const GenerateImageModel& model = controller_.model();
  const bool hasPicture = model.shown() && !model.showsProgress();
  error_->setText(model.error());
  error_->setVisible(!model.error().isEmpty());
  picture_->follow();
  actions_->setVisible(hasPicture);
  followCaption(hasPicture && model.area() == GenerateImageModel::Area::history);
  strip_->setVisible(controller_.historyList().rowCount() > 0);
  strip_->follow();
  pages_->setCurrentWidget(hasPicture ? static_cast<QWidget*>(picture_) : message_);
  if (model.isGenerating() == ticks_->isActive()) return followMessage();
  if (model.isGenerating())
    ticks_->start();
  else
    ticks_->stop();
  followMessage();
}

void ResultColumn::followCaption(bool isShown) {
  caption_->setVisible(isShown);
  if (!isShown) return;
  const QString text = captionOf(*controller_.model().shown());
  caption_->setText(caption_->fontMetrics().elidedText(text, Qt::ElideRight, kCaptionWidth));
}

void ResultColumn::followMessage() {
  const GenerateImageModel& model = controller_.model();
  if (const auto since = model.startedAt()) {
    symbol_->setSymbol(u"sparkles"_s, &Theme::accent);
    title_->setText(u"Generating… %1"_s.arg(seconds(controller_.clock().monotonic() - *since)));
    detail_->setText(
        u"Esc cancels. Press the shortcut to hide this panel: the image is made all the same, and a toast says when "
        u"it is done."_s);
    return;
  }
  const bool isFailure = !model.error().isEmpty();
  symbol_->setSymbol(isFailure ? u"exclamationmark.triangle.fill"_s : u"photo"_s,
                     isFailure ? &Theme::failure : &Theme::secondary);
  title_->setText(isFailure ? u"No image"_s : u"Your image appears here"_s);
  detail_->setText(isFailure ? keyText(u"Press ⌘↩ to try again."_s)
                             : keyText(u"Describe it, add snips or files as references, and press ⌘↩."_s));
}
