#include "tools/image_to_prompt/promptify_result_view.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QTextDocumentFragment>

#include "core/ui/accessible_roles.h"
#include "core/ui/icon.h"
#include "core/ui/key_caps.h"
#include "core/ui/panel_menu.h"
#include "core/ui/primary_button.h"
#include "core/ui/settings_form.h"
#include "core/ui/symbol_label.h"
#include "core/ui/theme.h"
#include "platform/command_key.h"
#include "tools/image_to_prompt/prompt_text.h"
#include "tools/image_to_prompt/promptify_result_controller.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSymbol = 20;
constexpr int kThumbnail = 48;
constexpr int kThumbnailRadius = 6;
constexpr int kClose = 24;
constexpr int kCopyWidth = 144;

/// The image that the prompt is of, whole.
class Thumbnail final : public QWidget {
 public:
  explicit Thumbnail(const QImage& picture) : picture_(picture) {
    setFixedSize(kThumbnail, kThumbnail);
    setAccessibleRole(*this, QAccessible::Graphic);
    setAccessibleName(u"The image"_s);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const Theme& theme = themeOf(*this);
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath frame;
    frame.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kThumbnailRadius, kThumbnailRadius);
    painter.fillPath(frame, theme.raised);
    painter.setClipPath(frame);
    QRectF place(QPointF(), QSizeF(picture_.size()).scaled(size(), Qt::KeepAspectRatio));
    place.moveCenter(QRectF(rect()).center());
    painter.drawImage(place, picture_);
    painter.setClipping(false);
    painter.setPen(QPen(theme.edge, 1));
    painter.drawPath(frame);
  }

 private:
  QImage picture_;
};

class CloseButton final : public QPushButton {
 public:
  CloseButton() {
    setFixedSize(kClose, kClose);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(u"Close"_s);
    setToolTip(u"Close (esc)"_s);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const Theme& theme = themeOf(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintSymbol(painter, u"xmark.circle.fill"_s, rect(), underMouse() ? theme.text : theme.secondary);
  }
};

}  // namespace

PromptifyResultView::PromptifyResultView(PromptifyResultController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      copy_(new PrimaryButton),
      hint_(makeDetailLabel({})),
      text_(new PromptText(controller_.model().prompt())),
      menu_(new PanelMenu(u"Menu of the prompt"_s, this)) {
  setWindowTitle(u"Image to Prompt"_s);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(1);
  column->addWidget(makeHeader());
  column->addWidget(text_, 1);
  column->addWidget(makeFooter());
  setFocusProxy(text_);
  connect(text_, &PromptText::menuWanted, this, &PromptifyResultView::showMenu);
  connect(copy_, &QPushButton::clicked, this, [this] { controller_.copy(); });
  connect(&controller_.model(), &PromptifyResultModel::changed, this, &PromptifyResultView::follow);
  setHasKeyboard(true);
  follow();
}

QWidget* PromptifyResultView::makeHeader() {
  auto* header = new QWidget;
  header->setFixedHeight(promptcard::kHeaderHeight);
  auto* close = new CloseButton;
  connect(close, &QPushButton::clicked, this, [this] { controller_.hide(); });
  auto* row = new QHBoxLayout(header);
  row->setContentsMargins(promptcard::kTextInset, 0, promptcard::kTextInset, 0);
  row->setSpacing(Theme::kGrid + Theme::kGrid / 2);
  row->addWidget(new SymbolLabel(u"wand.and.stars"_s, kSymbol));
  if (!controller_.model().sourceImage().isNull()) row->addWidget(new Thumbnail(controller_.model().sourceImage()));
  row->addWidget(makeTitle(), 1);
  row->addWidget(close);
  return header;
}

QWidget* PromptifyResultView::makeTitle() const {
  const QString& style = controller_.model().styleLabel();
  auto* title = new QWidget;
  auto* column = new QVBoxLayout(title);
  column->setContentsMargins({});
  column->setSpacing(2);
  column->addStretch(1);
  column->addWidget(makeHeading(u"Image to Prompt"_s));
  column->addWidget(
      makeDetailLabel(style.isEmpty() ? u"Copied to your clipboard"_s : style + u" · copied to your clipboard"_s));
  column->addStretch(1);
  return title;
}

QWidget* PromptifyResultView::makeFooter() {
  hint_->setWordWrap(false);
  copy_->setFocusPolicy(Qt::NoFocus);
  copy_->setFixedWidth(kCopyWidth);
  auto* footer = new QWidget;
  footer->setFixedHeight(promptcard::kFooterHeight);
  auto* row = new QHBoxLayout(footer);
  row->setContentsMargins(promptcard::kTextInset, 0, promptcard::kTextInset, 0);
  row->setSpacing(Theme::kGrid);
  row->addWidget(new KeyCaps({u"esc"_s}));
  row->addWidget(hint_);
  row->addStretch(1);
  row->addWidget(new KeyCaps(keyCaps({u"⌘"_s, u"C"_s})));
  row->addWidget(copy_);
  return footer;
}

void PromptifyResultView::showMenu(const QPoint& place) {
  std::vector<PanelMenu::Entry> entries;
  if (const QString marked = text_->textCursor().selection().toPlainText(); !marked.isEmpty())
    entries.push_back({u"Copy Selection"_s, {}, [this, marked] { controller_.copy(marked); }});
  entries.push_back({u"Copy Prompt"_s, keyCaps({u"⌘"_s, u"C"_s}), [this] { controller_.copy(); }});
  entries.push_back({u"Select All"_s, {}, [this] { text_->selectAll(); }});
  menu_->popup(entries, mapFromGlobal(place));
}

void PromptifyResultView::setHasKeyboard(bool hasKeyboard) {
  hint_->setText(hasKeyboard ? u"close"_s : u"close, after a click on this card"_s);
}

void PromptifyResultView::follow() {
  const bool copied = controller_.model().copied();
  copy_->setSymbol(copied ? u"checkmark"_s : u"doc.on.doc"_s);
  copy_->setText(copied ? u"Copied!"_s : u"Copy Prompt"_s);
}

void PromptifyResultView::paintEvent(QPaintEvent*) {
  const QColor line = themeOf(*this).hairline;
  QPainter painter(this);
  painter.fillRect(0, promptcard::kHeaderHeight, width(), 1, line);
  painter.fillRect(0, height() - promptcard::kFooterHeight - 1, width(), 1, line);
}
