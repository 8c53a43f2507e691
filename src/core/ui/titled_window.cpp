#include "core/ui/titled_window.h"

#include <QIcon>
#include <QKeyEvent>
#include <QScreen>

#include "core/ui/accessible_roles.h"
#include "core/ui/palette_panel.h"

using namespace Qt::StringLiterals;

TitledWindow::TitledWindow(const QString& title) {
  setAccessibleRole(*this, QAccessible::Window);
  setWindowTitle(title);
  setWindowIcon(QIcon(u":/icons/vantle.svg"_s));
}

void TitledWindow::open() {
  if (const QScreen* screen = activeScreen(); screen && !isVisible())
    move(screen->availableGeometry().center() - rect().center());
  setWindowState(windowState() & ~Qt::WindowMinimized);
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
