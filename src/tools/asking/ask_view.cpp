#include "tools/asking/ask_view.h"

#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QPointer>
#include <QVBoxLayout>

#include <algorithm>

#include "core/ui/panel_menu.h"
#include "core/ui/theme.h"
#include "platform/command_key.h"
#include "tools/asking/answer_text_view.h"
#include "tools/asking/ask_composer.h"
#include "tools/asking/ask_flow.h"
#include "tools/asking/ask_header.h"
#include "tools/asking/question_field.h"
#include "tools/asking/transcript_view.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSide = 2 * Theme::kGrid;

}  // namespace

AskView::AskView(AskModel& model, AskFlow& flow, const Texts& texts, QWidget* parent)
    : QWidget(parent),
      flow_(flow),
      header_(new AskHeader(model, texts.symbol, texts.title)),
      transcript_(new TranscriptView(model, texts.empty)),
      composer_(new AskComposer(model)),
      footer_(new FooterHints({})),
      middle_(new QHBoxLayout),
      menu_(new PanelMenu(u"Menu of the text"_s, this)) {
  setWindowTitle(texts.title);
  layOut();
  connect(&model, &AskModel::changed, this, [this] { follow(); });
  connectParts();
}

void AskView::layOut() {
  auto* inset = new QVBoxLayout;
  inset->setContentsMargins(kSide, Theme::kGrid, kSide, kSide - 4);
  inset->addWidget(composer_);
  middle_->setSpacing(0);
  middle_->addWidget(transcript_, 1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(0);
  column->addWidget(header_);
  column->addLayout(middle_, 1);
  column->addLayout(inset);
  column->addWidget(footer_);
}

void AskView::addBeside(QWidget* widget) {
  middle_->setContentsMargins(kSide, 0, 0, 0);
  middle_->insertWidget(0, widget);
}

void AskView::connectParts() {
  connect(&composer_->field(), &QuestionField::submitted, this, [this] { flow_.submit(); });
  connect(header_, &AskHeader::copyWanted, this, [this] { flow_.copyLatestAnswer(); });
  connect(header_, &AskHeader::newWanted, this, [this] { flow_.startOver(); });
  connect(transcript_, &TranscriptView::copyWanted, this, [this](const QString& text) { flow_.copy(text); });
  connect(transcript_, &TranscriptView::linkChosen, this, &AskView::linkChosen);
  connect(transcript_, &TranscriptView::menuWanted, this, &AskView::showMenu);
}

/// The text may be gone by the time that something is chosen: then there is nothing to copy any more.
void AskView::showMenu(AnswerTextView* text, const QPoint& place, const QUrl& link) {
  const QPointer<AnswerTextView> at(text);
  std::vector<PanelMenu::Entry> entries;
  if (const QString marked = text->selectedText(); !marked.isEmpty())
    entries.push_back({u"Copy Selection"_s, keyCaps({u"⌘"_s, u"C"_s}), [this, marked] { flow_.copy(marked); }});
  if (!link.isEmpty())
    entries.push_back({u"Copy Link Address"_s, {}, [this, link] { flow_.copy(link.toString(QUrl::FullyEncoded)); }});
  const QString all = text->isMarkdown() ? u"Copy Answer as Markdown"_s : u"Copy Question"_s;
  entries.push_back({all, {}, [this, at] {
                       if (at) flow_.copy(at->source());
                     }});
  entries.push_back({u"Select All"_s, {}, [at] {
                       if (at) at->selectAll();
                     }});
  menu_->popup(entries, mapFromGlobal(place));
}

/// The menu key, wherever the keyboard is; the pointer opens the menu of what it is at.
void AskView::contextMenuEvent(QContextMenuEvent* event) {
  event->setAccepted(event->reason() == QContextMenuEvent::Keyboard && transcript_->askForMenu());
}

void AskView::follow() {
  footer_->setHints(hints());
  // What had the keyboard may be gone with the conversation.
  if (!window()->focusWidget()) focusField();
}

QString AskView::selectedText() const {
  const QString inField = composer_->field().hasFocus() ? composer_->field().selectedText() : QString();
  return inField.isEmpty() ? transcript_->selectedText() : inField;
}

void AskView::scrollTranscript(double pages) { transcript_->scroll(pages); }

void AskView::takeTyping(const QString& characters) {
  const bool isPress = characters == u" " && qobject_cast<QAbstractButton*>(window()->focusWidget());
  if (!isPress) focusField();
}

std::vector<QWidget*> AskView::stops() const {
  std::vector<QWidget*> all;
  for (QAbstractButton* button : header_->findChildren<QAbstractButton*>()) all.push_back(button);
  for (QWidget* stop : transcript_->stops()) all.push_back(stop);
  for (QWidget* stop : composer_->stops()) all.push_back(stop);
  std::erase_if(all, [](const QWidget* stop) { return !stop->isVisible() || !stop->isEnabled(); });
  return all;
}

bool AskView::focusNextPrevChild(bool next) {
  std::vector<QWidget*> all = stops();
  if (!next) std::ranges::reverse(all);
  const auto current = std::ranges::find(all, window()->focusWidget());
  const auto following = current == all.end() ? all.begin() : std::next(current);
  QWidget* stop = following == all.end() ? all.front() : *following;
  stop->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

bool AskView::pressFocused() {
  auto* button = qobject_cast<QAbstractButton*>(window()->focusWidget());
  if (button) button->click();
  return button != nullptr;
}

void AskView::focusField() { composer_->field().setFocus(); }
