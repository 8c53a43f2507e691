#include "core/tools/escape_route.h"

#include <utility>

using namespace Qt::StringLiterals;

QString EscapeRoute::open(KeyTarget where, std::function<void()> escaped) {
  close();
  if (where != KeyTarget::none)
    watch_ = targets_.watchEscape([this, where, escaped = std::move(escaped)] {
      if (here() != where) return;
      close();
      escaped();
    });
  return watch_ ? u"Esc or a click here cancels"_s : u"Click here to cancel"_s;
}
