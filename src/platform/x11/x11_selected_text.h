#pragma once

#include <QThreadPool>

#include "platform/selected_text.h"
#include "platform/x11/x11_session.h"

/// The PRIMARY selection of terminals, which is all that can be had of them without a key that means something else
/// there. Of other programs only a copy tells the truth: many do not follow with PRIMARY when text is selected by keys,
/// or is not selected any more. Main thread only.
class X11SelectedText final : public SelectedText {
 public:
  explicit X11SelectedText(const X11Session& session);

  bool isCopiedByShortcut(KeyTarget target) const override;
  void read(KeyTarget target, const JobRef& job, Answer answer) override;

 private:
  X11Session session_;
  xcb_atom_t primary_;
  QThreadPool readers_;
};
