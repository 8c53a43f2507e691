#include "app/menu/menu_window.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <vector>

#include "app/menu/menu_controller.h"
#include "app/menu/menu_placement.h"
#include "app/menu/menu_view.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

MenuWindow::MenuWindow(MenuController& controller, PanelWindow& native, IconGeometry iconGeometry)
    : iconGeometry_(std::move(iconGeometry)), panel_(native, {}), view_(new MenuView(controller)) {
  panel_.setWindowTitle(u"Vantle Menu"_s);
  panel_.setContent(view_);
  panel_.setKeyHandler([&controller](const KeyPress& press) { return controller.handleKey(press); });
  connect(&panel_, &PalettePanel::resignedKey, &controller, &MenuController::resign);
  connect(view_, &MenuView::wantedSizeChanged, this, &MenuWindow::place);
}

void MenuWindow::present() {
  icon_ = iconGeometry_();
  pointer_ = QCursor::pos();
  place();
  panel_.present();
}

void MenuWindow::place() {
  std::vector<MenuScreen> screens;
  for (const QScreen* screen : QGuiApplication::screens())
    screens.push_back({screen->geometry(), screen->availableGeometry()});
  constexpr int kMargin = Theme::kPanelMargin;
  const QRect card = menuCard(view_->wantedSize(), icon_, pointer_, screens);
  panel_.setGeometry(card.adjusted(-kMargin, -kMargin, kMargin, kMargin));
}
