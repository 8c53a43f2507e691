#include "tools/ask_ai/attachment_strip.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>

#include "core/ui/icon.h"
#include "core/ui/theme.h"
#include "tools/asking/thumbnail_painting.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSide = 52;
constexpr int kMark = 14;

/// One image, with a cross that says what a press does.
class Thumbnail final : public QPushButton {
 public:
  Thumbnail(const QImage& image, int number) : image_(image) {
    setFixedSize(kSide, kSide);
    setAccessibleName(u"Remove attached image %1"_s.arg(number));
    setToolTip(u"Remove this image"_s);
    setCursor(Qt::ArrowCursor);
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool isDelete = event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete;
    return isDelete ? click() : QPushButton::keyPressEvent(event);
  }

  void paintEvent(QPaintEvent*) override {
    const Theme& theme = themeOf(*this);
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QPen edge = hasFocus() ? QPen(theme.accent, 2) : QPen(theme.edge, 1);
    paintThumbnail(painter, QRectF(rect()).adjusted(1, 1, -1, -1), image_, {theme.raised, edge});
    paintMark(painter);
  }

 private:
  void paintMark(QPainter& painter) const {
    const QRectF mark(width() - kMark - 4, 4, kMark, kMark);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, underMouse() ? 230 : 160));
    painter.drawEllipse(mark);
    paintSymbol(painter, u"xmark"_s, mark.adjusted(3, 3, -3, -3), Qt::white);
  }

  QImage image_;
};

}  // namespace

AttachmentStrip::AttachmentStrip(QuickQuestionModel& model, QWidget* parent)
    : QWidget(parent), model_(model), row_(new QHBoxLayout(this)) {
  setAccessibleName(u"Attached images"_s);
  row_->setContentsMargins(0, 0, 0, Theme::kGrid / 2);
  row_->setSpacing(Theme::kGrid);
  row_->addStretch(1);
  connect(&model_, &AskModel::changed, this, &AttachmentStrip::follow);
  follow();
}

void AttachmentStrip::follow() {
  std::vector<int> ids;
  for (const AskAttachment& attachment : model_.attachments()) ids.push_back(attachment.id);
  setVisible(!ids.empty());
  if (std::exchange(shown_, ids) == ids) return;
  const bool hadFocus = isAncestorOf(QApplication::focusWidget());
  while (row_->count() > 1) {
    const std::unique_ptr<QLayoutItem> item(row_->takeAt(0));
    // One of them may be what was pressed just now.
    item->widget()->hide();
    item->widget()->deleteLater();
  }
  for (std::size_t i = 0; i < ids.size(); ++i) {
    auto* thumbnail = new Thumbnail(model_.attachments()[i].thumbnail, static_cast<int>(i) + 1);
    connect(thumbnail, &QPushButton::clicked, this, [this, id = ids[i]] { model_.detach(id); });
    row_->insertWidget(static_cast<int>(i), thumbnail);
    if (hadFocus && i + 1 == ids.size()) thumbnail->setFocus();
  }
}
