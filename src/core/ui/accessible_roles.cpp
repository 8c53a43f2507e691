#include "core/ui/accessible_roles.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace {

constexpr auto kProperty = "vantleAccessibleRole";

QAccessibleInterface* accessibleOf(const QString&, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  const QVariant role = widget ? widget->property(kProperty) : QVariant();
  return role.isValid() ? new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt())) : nullptr;
}

}  // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
  static const bool installed = (QAccessible::installFactory(accessibleOf), true);
  Q_UNUSED(installed)
  widget.setProperty(kProperty, static_cast<int>(role));
}
