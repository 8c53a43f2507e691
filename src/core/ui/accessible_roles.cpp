#include "core/ui/accessible_roles.h"

#include <QAccessibleWidget>
#include <QWidget>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct ClassRole {
  QLatin1StringView name;
  QAccessible::Role role;
};

constexpr std::array kClassRoles = {
    ClassRole{"TitledWindow"_L1, QAccessible::Window},
    ClassRole{"PalettePanel"_L1, QAccessible::Dialog},
    ClassRole{"ReadingArea"_L1, QAccessible::Pane},
    ClassRole{"ArrangeGrid"_L1, QAccessible::List},
};

/// Asked for each class that the object is of, the most derived first.
QAccessibleInterface* accessibleOf(const QString& className, QObject* object) {
  const auto found = std::ranges::find_if(kClassRoles, [&](const ClassRole& entry) { return className == entry.name; });
  return found == kClassRoles.end() ? nullptr : new QAccessibleWidget(static_cast<QWidget*>(object), found->role);
}

}  // namespace

void installAccessibleRoles() {
  static const bool installed = (QAccessible::installFactory(accessibleOf), true);
  Q_UNUSED(installed)
}
