#include "tools/ask_ai/quick_question_view.h"

#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QToolButton>

#include <algorithm>

#include "core/ui/theme.h"
#include "platform/command_key.h"
#include "tools/ask_ai/attachment_strip.h"
#include "tools/ask_ai/quick_question_panel_controller.h"
#include "tools/asking/ask_composer.h"
#include "tools/asking/question_field.h"

using namespace Qt::StringLiterals;

namespace {

bool holdsImages(const QMimeData& data) {
  return data.hasImage() || std::ranges::any_of(data.urls(), [](const QUrl& url) { return url.isLocalFile(); });
}

}  // namespace

QuickQuestionView::QuickQuestionView(QuickQuestionPanelController& controller, QWidget* parent)
    : AskView(controller.model(), controller,
              {u"questionmark.bubble.fill"_s, u"Ask AI"_s, u"Short answers, right here."_s}, parent),
      controller_(controller),
      snip_(composer().addButton(u"plus.viewfinder"_s, u"Attach a region of the screen"_s,
                                 keyText(u"Draw a box on screen to attach it (⌘S)"_s))),
      file_(composer().addButton(u"photo"_s, u"Attach image files"_s,
                                 keyText(u"Attach an image file — or paste one with ⌘V"_s))) {
  using Controller = QuickQuestionPanelController;
  setAcceptDrops(true);
  composer().addAbove(new AttachmentStrip(controller.model()));
  composer().field().setPlaceholder(u"Ask AI anything…"_s);
  connect(&controller_, &Controller::pasting, &composer().field(), &QuestionField::keepPlace);
  connect(&controller_, &Controller::textPasted, &composer().field(), &QuestionField::insert);
  connect(snip_, &QToolButton::clicked, &controller_, &Controller::addSnip);
  connect(file_, &QToolButton::clicked, &controller_, &Controller::attachFile);
  follow();
}

std::vector<KeyHint> QuickQuestionView::hints() const {
  const QuickQuestionModel& model = controller_.model();
  std::vector<KeyHint> all = {{{u"⌘"_s, u"S"_s}, u"snip"_s}, {{u"⌘"_s, u"V"_s}, u"paste image"_s}};
  if (model.latestAnswer()) all.push_back({{u"⌘"_s, u"C"_s}, u"copy answer"_s});
  all.push_back({{u"⌘"_s, u"N"_s}, u"new"_s});
  all.push_back({{u"esc"_s}, model.pending() ? u"cancel"_s : u"close"_s});
  return all;
}

void QuickQuestionView::follow() {
  AskView::follow();
  const QuickQuestionModel& model = controller_.model();
  composer().setHint(model.attachments().empty() ? u"Press ↩ to ask"_s : u"Press ↩ to ask about your image"_s);
  for (QToolButton* button : {snip_, file_}) button->setEnabled(model.canAttach());
}

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
