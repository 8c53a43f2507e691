#include "core/ui/titled_window.h"

#include <QAccessibleWidget>
#include <QIcon>
#include <QKeyEvent>
#include <QScreen>

#include "core/ui/palette_panel.h"

using namespace Qt::StringLiterals;

namespace {

/// Without it a screen reader takes the window for a box among others.
QAccessibleInterface* accessibleWindow(const QString&, QObject* object) {
  auto* window = qobject_cast<TitledWindow*>(object);
  return window ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

}  // namespace

TitledWindow::TitledWindow(const QString& title) {
  static const bool installed = (QAccessible::installFactory(accessibleWindow), true);
  Q_UNUSED(installed)
  setWindowTitle(title);
  setWindowIcon(QIcon(u":/icons/vantle.svg"_s));
}

void TitledWindow::open() {
  if (const QScreen* screen = activeScreen(); screen && !isVisible())
    move(screen->availableGeometry().center() - rect().center());
  show();
  raise();
  activateWindow();
}

void TitledWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close))
    close();
  else
    QWidget::keyPressEvent(event);
}
