#include "tools/ask_ai/quick_question_view.h"

#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

#include "core/ui/footer_hints.h"
#include "core/ui/theme.h"
#include "tools/ask_ai/attachment_strip.h"
#include "tools/ask_ai/quick_question_panel_controller.h"
#include "tools/asking/ask_composer.h"
#include "tools/asking/ask_header.h"
#include "tools/asking/question_field.h"
#include "tools/asking/transcript_view.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSide = 2 * Theme::kGrid;

std::vector<KeyHint> hints(const QuickQuestionModel& model) {
  std::vector<KeyHint> all = {{{u"⌘"_s, u"S"_s}, u"snip"_s}, {{u"⌘"_s, u"V"_s}, u"paste image"_s}};
  if (model.latestAnswer()) all.push_back({{u"⌘"_s, u"C"_s}, u"copy answer"_s});
  all.push_back({{u"⌘"_s, u"N"_s}, u"new"_s});
  all.push_back({{u"esc"_s}, model.pending() ? u"cancel"_s : u"close"_s});
  return all;
}

bool holdsImages(const QMimeData& data) {
  return data.hasImage() || std::ranges::any_of(data.urls(), [](const QUrl& url) { return url.isLocalFile(); });
}

}  // namespace

QuickQuestionView::QuickQuestionView(QuickQuestionPanelController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      header_(new AskHeader(controller.model(), u"questionmark.bubble.fill"_s, u"Ask AI"_s)),
      transcript_(new TranscriptView(controller.model(), u"Short answers, right here."_s)),
      composer_(new AskComposer(controller.model())),
      snip_(composer_->addButton(u"plus.viewfinder"_s, u"Attach a region of the screen"_s,
                                 u"Draw a box on screen to attach it (⌘S)"_s)),
      file_(
          composer_->addButton(u"photo"_s, u"Attach image files"_s, u"Attach an image file — or paste one with ⌘V"_s)),
      footer_(new FooterHints({})) {
  setWindowTitle(u"Ask AI"_s);
  setAcceptDrops(true);
  composer_->addAbove(new AttachmentStrip(controller.model()));
  composer_->field().setPlaceholder(u"Ask AI anything…"_s);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(0);
  column->addWidget(header_);
  column->addWidget(transcript_, 1);
  auto* inset = new QVBoxLayout;
  inset->setContentsMargins(kSide, Theme::kGrid / 2, kSide, kSide - 4);
  inset->addWidget(composer_);
  column->addLayout(inset);
  column->addWidget(footer_);
  connectParts();
  follow();
}

void QuickQuestionView::connectParts() {
  using Controller = QuickQuestionPanelController;
  connect(&controller_.model(), &AskModel::changed, this, &QuickQuestionView::follow);
  connect(&controller_, &Controller::textPasted, &composer_->field(), &QuestionField::insert);
  connect(&composer_->field(), &QuestionField::submitted, &controller_, &Controller::submit);
  connect(snip_, &QToolButton::clicked, &controller_, &Controller::addSnip);
  connect(file_, &QToolButton::clicked, &controller_, &Controller::attachFile);
  connect(header_, &AskHeader::copyWanted, &controller_, &Controller::copyLatestAnswer);
  connect(header_, &AskHeader::newWanted, &controller_, &Controller::startOver);
  connect(transcript_, &TranscriptView::copyWanted, &controller_, &Controller::copy);
  connect(transcript_, &TranscriptView::linkChosen, this, &QuickQuestionView::linkChosen);
}

void QuickQuestionView::follow() {
  const QuickQuestionModel& model = controller_.model();
  composer_->setHint(model.attachments().empty() ? u"Press ↩ to ask"_s : u"Press ↩ to ask about your image"_s);
  for (QToolButton* button : {snip_, file_}) button->setEnabled(model.canAttach());
  footer_->setHints(hints(model));
  // What had the keyboard may be gone with the conversation.
  if (!window()->focusWidget()) focusField();
}

QString QuickQuestionView::selectedText() const {
  const QString inField = composer_->field().hasFocus() ? composer_->field().selectedText() : QString();
  return inField.isEmpty() ? transcript_->selectedText() : inField;
}

void QuickQuestionView::scrollTranscript(double pages) { transcript_->scroll(pages); }

void QuickQuestionView::takeTyping(const QString& characters) {
  const bool isPress = characters == u" " && qobject_cast<QAbstractButton*>(window()->focusWidget());
  if (!isPress) focusField();
}

void QuickQuestionView::focusField() { composer_->field().setFocus(); }

void QuickQuestionView::setTargeted(bool targeted) {
  targeted_ = targeted;
  update();
}

void QuickQuestionView::dragEnterEvent(QDragEnterEvent* event) {
  if (!controller_.model().canAttach() || !holdsImages(*event->mimeData())) return;
  // Whatever the user's program proposes, the files stay where they are.
  event->setDropAction(Qt::CopyAction);
  event->accept();
  setTargeted(true);
}

void QuickQuestionView::dragLeaveEvent(QDragLeaveEvent*) { setTargeted(false); }

void QuickQuestionView::dropEvent(QDropEvent* event) {
  setTargeted(false);
  event->setDropAction(Qt::CopyAction);
  event->accept();
  take(*event->mimeData());
  Q_EMIT dropped();
}

void QuickQuestionView::take(const QMimeData& offered) {
  const bool hasFiles = std::ranges::any_of(offered.urls(), [](const QUrl& url) { return url.isLocalFile(); });
  if (hasFiles)
    controller_.attachFiles(offered.urls());
  else
    controller_.attachImage(qvariant_cast<QImage>(offered.imageData()));
}

void QuickQuestionView::paintEvent(QPaintEvent*) {
  if (!targeted_) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(themeOf(*this).accent, 2));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Theme::kCardRadius - 1, Theme::kCardRadius - 1);
}
