#include "app/usage/usage_window.h"

#include <QVBoxLayout>

#include "app/usage/usage_view.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kSize(440, 440);

}  // namespace

UsageWindow::UsageWindow(const QuotaStore& store, QuotaClient& client)
    : TitledWindow(u"Usage"_s), controller_(store, client), view_(new UsageView(controller_)) {
  setFixedSize(kSize);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(view_);
}

void UsageWindow::open() {
  controller_.refresh();
  TitledWindow::open();
  view_->focusFirst();
}
