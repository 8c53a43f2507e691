#pragma once

#include <QPushButton>

#include <expected>
#include <functional>

#include "base/job.h"

class RowRemark;

/// A button that tries something out and says in the row's remark how it went; meanwhile it is a "Cancel"
/// button.
class CheckControl : public QPushButton {
  Q_OBJECT

 public:
  /// What was found, or what is wrong.
  using Done = std::function<void(std::expected<QString, QString>)>;
  using Run = std::function<void(const JobRef& job, Done done)>;

  /// `name`: what is tested, for screen readers; `label`: what the button says ("Test").
  CheckControl(const QString& name, Run run, const QString& label = QStringLiteral("Test"));

  /// Where it says how it went; must live as long.
  void setRemark(RowRemark* remark) { remark_ = remark; }
  /// What is to be said when nothing has been tested, or what was tested has changed. Ends a test under way.
  void reset(const QString& text);
  bool isTesting() const { return isTesting_; }

 private:
  void toggle();
  void finish(const std::expected<QString, QString>& result);
  void setTesting(bool isTesting);

  QString name_;
  Run run_;
  QString label_;
  RowRemark* remark_ = nullptr;
  bool isTesting_ = false;
  Job job_;
};
