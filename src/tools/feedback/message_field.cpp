#include "tools/feedback/message_field.h"

#include <QMimeData>
#include <QUrl>

#include <algorithm>

#include "core/ui/theme.h"

namespace {

bool holdsPicture(const QMimeData& data) {
  const auto urls = data.urls();
  const bool isFiles = std::ranges::any_of(urls, [](const QUrl& url) { return url.isLocalFile(); });
  return isFiles || (data.hasImage() && !data.hasText());
}

}  // namespace

MessageField::MessageField(const QString& name, QWidget* parent) : QPlainTextEdit(parent) {
  setAccessibleName(name);
  setFont(Theme::rowFont());
  setTabChangesFocus(true);
  // The field around it is painted by the view, and drops are for the whole panel.
  setFrameShape(QFrame::NoFrame);
  viewport()->setAutoFillBackground(false);
  setAcceptDrops(false);
}

bool MessageField::canInsertFromMimeData(const QMimeData* source) const {
  return holdsPicture(*source) || QPlainTextEdit::canInsertFromMimeData(source);
}

void MessageField::insertFromMimeData(const QMimeData* source) {
  if (holdsPicture(*source))
    Q_EMIT picturePasted();
  else
    QPlainTextEdit::insertFromMimeData(source);
}
