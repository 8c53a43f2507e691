#include "tools/file_drop/bulk_upload_view.h"

#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <algorithm>

#include "core/ui/footer_hints.h"
#include "core/ui/palette_list.h"
#include "core/ui/primary_button.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "tools/file_drop/bulk_upload_panel_controller.h"
#include "tools/file_drop/drop_zone.h"
#include "tools/file_drop/item_row_delegate.h"
#include "tools/file_drop/upload_progress_view.h"
#include "tools/file_drop/upload_result_view.h"

using namespace Qt::StringLiterals;

namespace {

using Phase = BulkUploadModel::Phase;
using Choice = BulkUploadPanelController::Choice;

constexpr int kHeaderHeight = 48;
constexpr int kSide = 2 * Theme::kGrid;

std::vector<KeyHint> hints(const BulkUploadModel& model) {
  if (model.isBusy()) return {{{u"esc"_s}, u"cancel"_s}};
  if (model.phase() != Phase::collecting) return {{{u"⌘"_s, u"⌫"_s}, u"start over"_s}, {{u"esc"_s}, u"close"_s}};
  if (model.rowCount() == 0)
    return {{{u"⌘"_s, u"O"_s}, u"files"_s},
            {{u"⇧"_s, u"⌘"_s, u"O"_s}, u"folder"_s},
            {{u"⌘"_s, u"V"_s}, u"paste"_s},
            {{u"esc"_s}, u"close"_s}};
  return {{{u"↩"_s}, u"upload"_s},
          {{u"⌘"_s, u"O"_s}, u"add files"_s},
          {{u"⌘"_s, u"⌫"_s}, u"clear"_s},
          {{u"esc"_s}, u"close"_s}};
}

/// Files on this computer; what is dragged out of a browser is none.
bool holdsFiles(const QMimeData& data) {
  return std::ranges::any_of(data.urls(), [](const QUrl& url) { return url.isLocalFile(); });
}

}  // namespace

BulkUploadView::BulkUploadView(BulkUploadPanelController& controller, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      total_(makeDetailLabel({})),
      clear_(new QPushButton(u"Clear"_s)),
      zone_(new DropZone),
      list_(new PaletteList(u"Items"_s)),
      upload_(new PrimaryButton(u"Upload"_s)),
      progress_(new UploadProgressView(controller.model())),
      result_(new UploadResultView(controller.model())),
      pages_(new QStackedLayout),
      footer_(new FooterHints({})) {
  setWindowTitle(u"File Drop"_s);
  setAcceptDrops(true);
  for (QPushButton* button : {clear_, static_cast<QPushButton*>(upload_)}) button->setFocusPolicy(Qt::NoFocus);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(0);
  column->addWidget(makeHeader());
  auto* inset = new QVBoxLayout;
  inset->setContentsMargins(kSide, 0, kSide, kSide);
  inset->addLayout(pages_);
  column->addLayout(inset, 1);
  column->addWidget(footer_);
  for (QWidget* one : std::initializer_list<QWidget*>{zone_, makeListPage(), progress_, result_})
    pages_->addWidget(one);
  connectParts();
  follow();
}

QWidget* BulkUploadView::makeHeader() {
  auto* header = new QWidget;
  header->setFixedHeight(kHeaderHeight);
  header->setToolTip(u"Drag anywhere on this window to move it"_s);
  total_->setWordWrap(false);
  auto* row = new QHBoxLayout(header);
  row->setContentsMargins(kSide, 0, kSide, 0);
  row->setSpacing(Theme::kGrid);
  row->addWidget(makeHeading(u"File Drop"_s));
  row->addWidget(total_);
  row->addStretch(1);
  row->addWidget(clear_);
  return header;
}

QWidget* BulkUploadView::makeListPage() {
  listPage_ = new QWidget;
  auto* delegate = new ItemRowDelegate(list_);
  list_->setModel(&controller_.model());
  list_->setItemDelegate(delegate);
  auto* bar = new QHBoxLayout;
  bar->setSpacing(Theme::kGrid);
  bar->addWidget(makeDetailLabel(u"↑↓ select · ⌫ remove"_s), 1);
  bar->addWidget(upload_);
  auto* column = new QVBoxLayout(listPage_);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  column->addWidget(list_, 1);
  column->addLayout(bar);
  return listPage_;
}

void BulkUploadView::connectParts() {
  BulkUploadModel& model = controller_.model();
  connect(&model, &BulkUploadModel::changed, this, &BulkUploadView::follow);
  connect(clear_, &QPushButton::clicked, &controller_, &BulkUploadPanelController::reset);
  connect(upload_, &QPushButton::clicked, &controller_, &BulkUploadPanelController::upload);
  connect(zone_, &DropZone::filesWanted, &controller_, [this] { controller_.choose(Choice::files); });
  connect(zone_, &DropZone::folderWanted, &controller_, [this] { controller_.choose(Choice::folder); });
  connect(progress_, &UploadProgressView::cancelled, &controller_, &BulkUploadPanelController::cancel);
  connect(result_, &UploadResultView::chosen, &controller_, &BulkUploadPanelController::perform);
  connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [&model](const QModelIndex& current) { model.select(current.row()); });
}

void BulkUploadView::setHasKeyboard(bool hasKeyboard) {
  hasKeyboard_ = hasKeyboard;
  follow();
}

void BulkUploadView::follow() {
  const BulkUploadModel& model = controller_.model();
  const bool isList = model.phase() == Phase::collecting && model.rowCount() > 0;
  total_->setText(summary(model));
  total_->setVisible(isList);
  clear_->setVisible(isList);
  footer_->setHints(hints(model));
  footer_->setNotice(hasKeyboard_ ? QString() : u"Click this window to use its keys"_s);
  if (isList) followList();
  if (model.isBusy()) progress_->follow();
  if (page() == result_) result_->follow();
  pages_->setCurrentWidget(page());
}

QWidget* BulkUploadView::page() const {
  const BulkUploadModel& model = controller_.model();
  if (model.isBusy()) return progress_;
  if (model.phase() != Phase::collecting) return result_;
  return model.rowCount() > 0 ? listPage_ : zone_;
}

void BulkUploadView::followList() {
  const BulkUploadModel& model = controller_.model();
  upload_->setEnabled(!model.isMeasuring());
  const QModelIndex index = model.index(model.selectedIndex());
  list_->setCurrentIndex(index);
  list_->scrollTo(index);
}

void BulkUploadView::setTargeted(bool targeted) {
  targeted_ = targeted;
  zone_->setTargeted(targeted);
  update();
}

void BulkUploadView::dragEnterEvent(QDragEnterEvent* event) {
  if (controller_.model().isBusy() || !holdsFiles(*event->mimeData())) return;
  // Whatever the user's program proposes, the files stay where they are.
  event->setDropAction(Qt::CopyAction);
  event->accept();
  setTargeted(true);
}

void BulkUploadView::dragLeaveEvent(QDragLeaveEvent*) { setTargeted(false); }

void BulkUploadView::dropEvent(QDropEvent* event) {
  setTargeted(false);
  event->setDropAction(Qt::CopyAction);
  event->accept();
  controller_.add(event->mimeData()->urls());
  Q_EMIT dropped();
}

/// The zone has a frame of its own; over the other pages the card is the target.
void BulkUploadView::paintEvent(QPaintEvent*) {
  if (!targeted_ || page() == zone_) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(themeOf(*this).accent, 2));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Theme::kCardRadius - 1, Theme::kCardRadius - 1);
}
