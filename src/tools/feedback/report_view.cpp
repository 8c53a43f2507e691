#include "tools/feedback/report_view.h"

#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QStackedLayout>
#include <QStyleOption>
#include <QUrl>
#include <QVBoxLayout>

#include "core/ui/control_painter.h"
#include "core/ui/footer_hints.h"
#include "core/ui/primary_button.h"
#include "core/ui/settings_form.h"
#include "core/ui/symbol_label.h"
#include "core/ui/theme.h"
#include "core/ui/toned_label.h"
#include "tools/feedback/message_field.h"
#include "tools/feedback/report_panel_controller.h"
#include "tools/feedback/snip_strip.h"

using namespace Qt::StringLiterals;

using Phase = ReportModel::Phase;

namespace {

constexpr int kSide = 2 * Theme::kGrid;
constexpr int kFieldInset = 4;
constexpr int kThanksIcon = 40;

std::vector<KeyHint> hints(const ReportModel& model) {
  if (model.phase() == Phase::sending) return {{{u"esc"_s}, u"cancel and close"_s}};
  if (model.phase() == Phase::sent) return {{{u"⌘"_s, u"N"_s}, u"another"_s}, {{u"esc"_s}, u"close"_s}};
  std::vector<KeyHint> hints = {{{u"⌘"_s, u"↩"_s}, u"send"_s}, {{u"⌘"_s, u"S"_s}, u"snip"_s}};
  if (!model.snips().empty()) hints.push_back({{u"⇧"_s, u"⌘"_s, u"S"_s}, u"remove snip"_s});
  hints.push_back({{u"⌘"_s, u"N"_s}, u"new"_s});
  hints.push_back({{u"esc"_s}, u"close"_s});
  return hints;
}

/// What may be pictures: files, or one that has no file.
std::vector<PasteboardData> offered(const QMimeData& data) {
  std::vector<PasteboardData> pieces;
  for (const QUrl& url : data.urls())
    if (url.isLocalFile()) pieces.push_back({PasteboardFormat::fileURLs, url.toEncoded()});
  if (pieces.empty() && data.hasFormat(u"image/png"_s))
    pieces.push_back({PasteboardFormat::png, data.data(u"image/png"_s)});
  return pieces;
}

}  // namespace

ReportView::ReportView(ReportPanelController& controller, const QString& name, QWidget* choice, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      message_(new MessageField(controller.texts().title)),
      snips_(new SnipStrip(controller)),
      state_(new TonedLabel(&Theme::secondary)),
      send_(new PrimaryButton(u"Send"_s)),
      pages_(new QStackedLayout),
      footer_(new FooterHints({})) {
  setWindowTitle(name);
  setAcceptDrops(true);
  message_->installEventFilter(this);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(0);
  column->addLayout(pages_, 1);
  column->addWidget(footer_);
  pages_->addWidget(makeForm(choice));
  pages_->addWidget(makeThanks());
  connect(message_, &QPlainTextEdit::textChanged, &controller_,
          [this] { controller_.model().setMessage(message_->toPlainText()); });
  connect(message_, &MessageField::picturePasted, &controller_, &ReportPanelController::pasteSnip);
  connect(send_, &QPushButton::clicked, &controller_, &ReportPanelController::submit);
  connect(&controller_.model(), &ReportModel::changed, this, &ReportView::follow);
  follow();
}

QWidget* ReportView::makeForm(QWidget* choice) {
  auto* form = new QWidget;
  auto* column = new QVBoxLayout(form);
  column->setContentsMargins(kSide, kSide, kSide, kSide - Theme::kGrid / 2);
  column->setSpacing(Theme::kGrid);
  column->addWidget(makeHeading(controller_.texts().title));
  column->addWidget(makeDetailLabel(controller_.texts().subtitle));
  if (choice) column->addWidget(choice);
  auto* field = new QVBoxLayout;
  field->setContentsMargins(kFieldInset, kFieldInset, kFieldInset, kFieldInset);
  field->addWidget(message_);
  column->addLayout(field, 1);
  column->addWidget(snips_);
  column->addWidget(makeFoot());
  return form;
}

QWidget* ReportView::makeFoot() {
  state_->setFont(Theme::detailFont());
  state_->setWordWrap(true);
  state_->setTextFormat(Qt::PlainText);
  send_->setFocusPolicy(Qt::NoFocus);
  auto* foot = new QWidget;
  auto* row = new QHBoxLayout(foot);
  row->setContentsMargins({});
  row->setSpacing(kSide);
  row->addWidget(state_, 1);
  row->addWidget(send_, 0, Qt::AlignBottom);
  return foot;
}

QWidget* ReportView::makeThanks() {
  auto* thanks = makeHeading(controller_.texts().thanks);
  auto* after = makeDetailLabel(controller_.texts().afterThanks);
  auto* icon = new SymbolLabel({}, kThanksIcon);
  icon->setSymbol(u"checkmark.circle.fill"_s, &Theme::success);
  for (QLabel* label : {thanks, after}) label->setAlignment(Qt::AlignCenter);
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  column->setSpacing(Theme::kGrid);
  column->addStretch(1);
  column->addWidget(icon, 0, Qt::AlignHCenter);
  column->addWidget(thanks);
  column->addWidget(after);
  column->addStretch(1);
  return page;
}

void ReportView::setHasKeyboard(bool hasKeyboard) {
  hasKeyboard_ = hasKeyboard;
  follow();
}

void ReportView::follow() {
  const ReportModel& model = controller_.model();
  pages_->setCurrentIndex(model.phase() == Phase::sent ? 1 : 0);
  // Compared, so that the cursor stays where it is.
  if (message_->toPlainText() != model.message()) message_->setPlainText(model.message());
  message_->setPlaceholderText(controller_.placeholder());
  message_->setReadOnly(!model.isEditable());
  snips_->follow();
  send_->setEnabled(model.canSubmit());
  followState();
  footer_->setHints(hints(model));
  footer_->setNotice(hasKeyboard_ ? QString() : u"Click this window to use its keys"_s);
  message_->setFocus();
}

void ReportView::followState() {
  const ReportModel& model = controller_.model();
  const bool isFailed = model.phase() == Phase::failed;
  state_->setTone(isFailed ? &Theme::failure : &Theme::secondary);
  state_->setText(isFailed                          ? model.error() + ReportTexts::retryHint()
                  : model.phase() == Phase::sending ? controller_.texts().sending
                                                    : controller_.privacyLine());
}

/// The ring around the field is this widget's to paint.
bool ReportView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
  return QWidget::eventFilter(watched, event);
}

void ReportView::dragEnterEvent(QDragEnterEvent* event) {
  if (!controller_.model().canAddSnip() || offered(*event->mimeData()).empty()) return;
  // Whatever the user's program proposes, the files stay where they are.
  event->setDropAction(Qt::CopyAction);
  event->accept();
}

void ReportView::dropEvent(QDropEvent* event) {
  event->setDropAction(Qt::CopyAction);
  event->accept();
  controller_.dropSnips(offered(*event->mimeData()));
  Q_EMIT dropped();
}

void ReportView::paintEvent(QPaintEvent*) {
  if (!message_->isVisible()) return;
  QStyleOption option;
  option.initFrom(message_);
  option.rect = QRect(message_->mapTo(this, QPoint()), message_->size())
                    .adjusted(-kFieldInset, -kFieldInset, kFieldInset, kFieldInset);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  control::paintField(painter, option, themeOf(*this));
}
