#include "tools/inject_md/md_document_editor.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyleOption>
#include <QTextCursor>
#include <QTimer>
#include <QVBoxLayout>

#include "base/visible_text.h"
#include "core/ui/control_painter.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "tools/inject_md/well_known_templates.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kPause = 500;
constexpr int kHeight = 240;
constexpr int kShown = 80;
constexpr int kFieldInset = 4;

}  // namespace

MDDocumentEditor::MDDocumentEditor(InjectMDStore& store, QWidget* parent)
    : QWidget(parent),
      store_(store),
      title_(makeHeading({})),
      text_(new QPlainTextEdit),
      reset_(new QPushButton(u"Reset to default"_s)),
      pause_(new QTimer(this)) {
  text_->setFont(Theme::monospacedFont());
  text_->setFixedHeight(kHeight);
  text_->setTabChangesFocus(true);
  // The field around it is painted here, round and with the ring of the focus.
  text_->setFrameShape(QFrame::NoFrame);
  text_->viewport()->setAutoFillBackground(false);
  text_->installEventFilter(this);
  pause_->setSingleShot(true);
  pause_->setInterval(kPause);
  auto* header = new QHBoxLayout;
  header->addWidget(title_, 1);
  header->addWidget(reset_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  column->addLayout(header);
  auto* field = new QHBoxLayout;
  field->setContentsMargins(kFieldInset, kFieldInset, kFieldInset, kFieldInset);
  field->addWidget(text_);
  column->addLayout(field);
  connect(text_, &QPlainTextEdit::textChanged, pause_, qOverload<>(&QTimer::start));
  connect(pause_, &QTimer::timeout, this, &MDDocumentEditor::commit);
  connect(reset_, &QPushButton::clicked, this, &MDDocumentEditor::reset);
  connect(&store_, &StoreBase::changed, this, &MDDocumentEditor::follow);
}

MDDocumentEditor::~MDDocumentEditor() { commit(); }

void MDDocumentEditor::edit(const QUuid& id) {
  commit();
  id_ = id;
  follow();
}

void MDDocumentEditor::follow() {
  const MDDocument* document = store_.value().find(id_);
  setVisible(document != nullptr);
  if (!document) return;
  const QString name = visibleLine(document->fileName, kShown);
  title_->setText(name);
  text_->setAccessibleName(u"Template of %1"_s.arg(name));
  const QString known = wellKnownTemplate(document->fileName);
  reset_->setVisible(!known.isNull());
  reset_->setEnabled(document->contents != known);
  reset_->setAccessibleName(u"Reset %1 to default"_s.arg(name));
  if (text_->document()->isModified() || text_->toPlainText() == document->contents) return;
  text_->setPlainText(document->contents);
  pause_->stop();
}

void MDDocumentEditor::commit() {
  pause_->stop();
  // Untouched, the text stays as it was stored: the editor would change line ends and unusual spaces.
  if (!text_->document()->isModified()) return;
  text_->document()->setModified(false);
  store_.update([this](InjectMDSettings& settings) { settings.setContents(id_, text_->toPlainText()); });
}

/// As an edit, which can be undone like any other.
void MDDocumentEditor::reset() {
  commit();
  const MDDocument* document = store_.value().find(id_);
  if (!document) return;
  QTextCursor everything(text_->document());
  everything.select(QTextCursor::Document);
  everything.insertText(wellKnownTemplate(document->fileName));
  text_->document()->setModified(false);
  store_.update([this](InjectMDSettings& settings) { settings.resetToDefault(id_); });
  text_->moveCursor(QTextCursor::Start);
  text_->setFocus();
}

void MDDocumentEditor::takeFocus() { text_->setFocus(); }

bool MDDocumentEditor::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusOut) commit();
  if (event->type() == QEvent::FocusOut || event->type() == QEvent::FocusIn) update();
  return QWidget::eventFilter(watched, event);
}

void MDDocumentEditor::hideEvent(QHideEvent* event) {
  commit();
  QWidget::hideEvent(event);
}

void MDDocumentEditor::paintEvent(QPaintEvent*) {
  QStyleOption option;
  option.initFrom(text_);
  option.rect = text_->geometry().adjusted(-kFieldInset, -kFieldInset, kFieldInset, kFieldInset);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  control::paintField(painter, option, themeOf(*this));
}
