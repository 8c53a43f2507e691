#include "tools/asking/link_stop.h"

#include <QPainter>

#include "core/ui/control_painter.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

LinkStop::LinkStop(QWidget* parent) : QAbstractButton(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::TabFocus);
}

void LinkStop::setLink(const QString& words, const QUrl& url) {
  url_ = url;
  setAccessibleName(u"Link: %1"_s.arg(words));
  setAccessibleDescription(url.toDisplayString());
}

void LinkStop::paintEvent(QPaintEvent*) {
  if (!hasFocus()) return;
  QPainter painter(this);
  control::paintFocusRing(painter, rect(), themeOf(*this));
}
