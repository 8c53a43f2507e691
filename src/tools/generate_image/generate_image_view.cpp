#include "tools/generate_image/generate_image_view.h"

#include <QDropEvent>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

#include "core/ui/footer_hints.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "platform/command_key.h"
#include "tools/generate_image/generate_image_panel_controller.h"
#include "tools/generate_image/prompt_editor.h"
#include "tools/generate_image/request_column.h"
#include "tools/generate_image/result_column.h"

using namespace Qt::StringLiterals;

namespace {

using Area = GenerateImageModel::Area;

constexpr int kHeaderHeight = 48;
constexpr int kSide = 2 * Theme::kGrid;
constexpr int kRequestWidth = 300;

std::vector<KeyHint> hints(const GenerateImageModel& model, bool hasHistory) {
  if (model.area() == Area::history)
    return {{{u"←"_s, u"→"_s}, u"browse"_s},
            {{u"↩"_s}, u"use its prompt"_s},
            {{u"⌫"_s}, u"delete"_s},
            {{u"⌘"_s, u"C"_s}, u"copy"_s},
            {{u"esc"_s}, u"back"_s}};
  if (model.area() == Area::references)
    return {{{u"←"_s, u"→"_s}, u"choose"_s}, {{u"⌫"_s}, u"take it away"_s}, {{u"esc"_s}, u"back"_s}};
  if (model.isGenerating()) return {{{u"esc"_s}, u"cancel"_s}, {{u"⌘"_s, u"N"_s}, u"new"_s}};
  std::vector<KeyHint> hints{{{u"⌘"_s, u"↩"_s}, u"generate"_s}, {{u"⌘"_s, u"S"_s}, u"add snip"_s}};
  if (model.shown()) {
    hints.push_back({{u"⌘"_s, u"C"_s}, u"copy"_s});
    hints.push_back({{u"⇧"_s, u"⌘"_s, u"S"_s}, u"save"_s});
    hints.push_back({{u"⌘"_s, u"E"_s}, u"edit"_s});
  } else {
    hints.push_back({{u"⇧"_s, u"⌘"_s, u"E"_s}, u"edit a snip"_s});
    hints.push_back({{u"⌘"_s, u"V"_s}, u"paste image"_s});
  }
  if (!model.references().empty())
    hints.push_back({{u"⇥"_s}, u"images"_s});
  else if (hasHistory)
    hints.push_back({{u"⇥"_s}, u"history"_s});
  hints.push_back({{u"esc"_s}, u"close"_s});
  return hints;
}

bool holdsImage(const QMimeData& data) {
  return data.hasImage() || std::ranges::any_of(data.urls(), [](const QUrl& url) { return url.isLocalFile(); });
}

}  // namespace

GenerateImageView::GenerateImageView(GenerateImagePanelController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      count_(makeDetailLabel({})),
      new_(new QPushButton(u"New"_s)),
      request_(new RequestColumn(controller)),
      result_(new ResultColumn(controller)),
      footer_(new FooterHints({})) {
  setWindowTitle(u"Generate Image"_s);
  setAcceptDrops(true);
  request_->setFixedWidth(kRequestWidth);
  auto* halves = new QHBoxLayout;
  halves->setContentsMargins(kSide, 0, kSide, kSide);
  halves->setSpacing(kSide);
  halves->addWidget(request_);
  halves->addWidget(result_, 1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(0);
  column->addWidget(makeHeader());
  column->addLayout(halves, 1);
  column->addWidget(footer_);
  connect(&controller_.model(), &GenerateImageModel::changed, this, &GenerateImageView::follow);
  connect(&controller_.historyList(), &QAbstractItemModel::modelReset, this, &GenerateImageView::follow);
  follow();
}

QWidget* GenerateImageView::makeHeader() {
  auto* header = new QWidget;
  header->setFixedHeight(kHeaderHeight);
  header->setToolTip(u"Drag anywhere on this window to move it"_s);
  count_->setWordWrap(false);
  new_->setFocusPolicy(Qt::NoFocus);
  new_->setToolTip(keyText(u"Start over with an empty prompt (⌘N)"_s));
  connect(new_, &QPushButton::clicked, &controller_, &GenerateImagePanelController::startNew);
  auto* row = new QHBoxLayout(header);
  row->setContentsMargins(kSide, 0, kSide, 0);
  row->setSpacing(Theme::kGrid);
  row->addWidget(makeHeading(u"Generate Image"_s));
  row->addWidget(count_);
  row->addStretch(1);
  row->addWidget(new_);
  return header;
}

bool GenerateImageView::hasSelection() const { return request_->editor().hasSelection(); }

void GenerateImageView::setHasKeyboard(bool hasKeyboard) {
  hasKeyboard_ = hasKeyboard;
  if (hasKeyboard) request_->editor().setFocus();
  follow();
}

QString GenerateImageView::notice() const {
  const GenerateImageModel& model = controller_.model();
  if (!hasKeyboard_) return u"Click this window to use its keys"_s;
  if (model.isDeletionAsked()) return u"Press ⌫ again to delete this image for good, or esc to keep it"_s;
  return model.notice();
}

void GenerateImageView::follow() {
  const GenerateImageModel& model = controller_.model();
  const auto kept = controller_.historyList().rowCount();
  count_->setText(kept == 0 ? QString() : kept == 1 ? u"1 image"_s : u"%1 images"_s.arg(kept));
  request_->follow();
  result_->follow();
  footer_->setHints(hints(model, kept > 0));
  footer_->setNotice(notice());
}

void GenerateImageView::dragEnterEvent(QDragEnterEvent* event) {
  // Its own picture needs no way back.
  if (event->source() || !holdsImage(*event->mimeData())) return;
  event->setDropAction(Qt::CopyAction);
  event->accept();
}

void GenerateImageView::dropEvent(QDropEvent* event) {
  event->setDropAction(Qt::CopyAction);
  event->accept();
  const QMimeData& held = *event->mimeData();
  if (held.hasImage())
    controller_.attachPicture(qvariant_cast<QImage>(held.imageData()));
  else
    controller_.attach(held.urls());
  Q_EMIT dropped();
}
