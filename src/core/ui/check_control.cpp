#include "core/ui/check_control.h"

#include <algorithm>

#include "core/ui/settings_form.h"

using namespace Qt::StringLiterals;

CheckControl::CheckControl(const QString& name, Run run, const QString& label)
    : name_(name), run_(std::move(run)), label_(label) {
  setTesting(false);
  const int grows = fontMetrics().horizontalAdvance(u"Cancel"_s) - fontMetrics().horizontalAdvance(text());
  setFixedWidth(sizeHint().width() + std::max(0, grows));
  connect(this, &QPushButton::clicked, this, &CheckControl::toggle);
}

void CheckControl::reset(const QString& text) {
  job_ = Job();
  setTesting(false);
  remark_->showHint(text);
}

void CheckControl::toggle() {
  if (isTesting_) {
    reset(u"Cancelled."_s);
    return;
  }
  setTesting(true);
  remark_->showHint(u"Testing…"_s);
  job_ = Job::start();
  run_(job_, [this](const auto& result) { finish(result); });
}

void CheckControl::finish(const std::expected<QString, QString>& result) {
  setTesting(false);
  if (result)
    remark_->showHint(u"✓ "_s + *result);
  else
    remark_->showError(result.error());
}

void CheckControl::setTesting(bool isTesting) {
  isTesting_ = isTesting;
  setText(isTesting ? u"Cancel"_s : label_);
  setAccessibleName(u"%1: %2"_s.arg(name_, text()));
}
