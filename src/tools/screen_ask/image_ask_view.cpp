#include "tools/screen_ask/image_ask_view.h"

#include <QAbstractButton>
#include <QVBoxLayout>

#include "core/ui/footer_hints.h"
#include "core/ui/theme.h"
#include "tools/asking/ask_composer.h"
#include "tools/asking/ask_header.h"
#include "tools/asking/question_field.h"
#include "tools/asking/transcript_view.h"
#include "tools/screen_ask/capture_preview.h"
#include "tools/screen_ask/image_ask_panel_controller.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSide = 2 * Theme::kGrid;

std::vector<KeyHint> hints(const ImageAskModel& model) {
  std::vector<KeyHint> all;
  if (model.latestAnswer()) all.push_back({{u"⌘"_s, u"C"_s}, u"copy answer"_s});
  all.push_back({{u"⌘"_s, u"N"_s}, u"start over"_s});
  all.push_back({{u"esc"_s}, model.pending() ? u"cancel"_s : u"close"_s});
  return all;
}

}  // namespace

ImageAskView::ImageAskView(ImageAskPanelController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      header_(new AskHeader(controller.model(), u"photo.on.rectangle.angled"_s, u"Image Ask"_s)),
      preview_(new CapturePreview(controller.model())),
      transcript_(new TranscriptView(controller.model(), u"Ask a question about what you selected."_s)),
      composer_(new AskComposer(controller.model())),
      footer_(new FooterHints({})) {
  setWindowTitle(u"Image Ask"_s);
  auto* middle = new QHBoxLayout;
  middle->setContentsMargins(kSide, 0, 0, 0);
  middle->setSpacing(0);
  middle->addWidget(preview_);
  middle->addWidget(transcript_, 1);
  auto* inset = new QVBoxLayout;
  inset->setContentsMargins(kSide, Theme::kGrid, kSide, kSide - 4);
  inset->addWidget(composer_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(0);
  column->addWidget(header_);
  column->addLayout(middle, 1);
  column->addLayout(inset);
  column->addWidget(footer_);
  composer_->setHint(u"Press ↩ to ask about the selected area"_s);
  connectParts();
  follow();
}

void ImageAskView::connectParts() {
  using Controller = ImageAskPanelController;
  connect(&controller_.model(), &AskModel::changed, this, &ImageAskView::follow);
  connect(&composer_->field(), &QuestionField::submitted, &controller_, &Controller::submit);
  connect(header_, &AskHeader::copyWanted, &controller_, &Controller::copyLatestAnswer);
  connect(header_, &AskHeader::newWanted, &controller_, &Controller::startOver);
  connect(transcript_, &TranscriptView::copyWanted, &controller_, &Controller::copy);
  connect(transcript_, &TranscriptView::linkChosen, this, &ImageAskView::linkChosen);
}

void ImageAskView::follow() {
  const ImageAskModel& model = controller_.model();
  composer_->field().setPlaceholder(model.latestAnswer() ? u"Ask a follow-up…"_s : u"Ask about this capture…"_s);
  footer_->setHints(hints(model));
  // What had the keyboard may be gone with the conversation.
  if (!window()->focusWidget()) focusField();
}

QString ImageAskView::selectedText() const {
  const QString inField = composer_->field().hasFocus() ? composer_->field().selectedText() : QString();
  return inField.isEmpty() ? transcript_->selectedText() : inField;
}

void ImageAskView::scrollTranscript(double pages) { transcript_->scroll(pages); }

void ImageAskView::setHasKeyboard(bool hasKeyboard) {
  footer_->setNotice(hasKeyboard ? QString() : u"Click this window to use its keys"_s);
}

void ImageAskView::takeTyping(const QString& characters) {
  const bool isPress = characters == u" " && qobject_cast<QAbstractButton*>(window()->focusWidget());
  if (!isPress) focusField();
}

void ImageAskView::focusField() { composer_->field().setFocus(); }
