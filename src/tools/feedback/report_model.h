#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <vector>

#include "tools/feedback/feedback_category.h"

/// A picture that goes with a report.
struct FeedbackSnip {
  /// Tells it from the others of the list, also after some of them are gone.
  int id = 0;
  QByteArray png;
};

/// What the user is writing to the maker, and how far it has got. Main thread only.
class ReportModel : public QObject {
  Q_OBJECT

 public:
  enum class Phase { editing, sending, sent, failed };
  static constexpr std::size_t kMostSnips = 3;

  Phase phase() const { return phase_; }
  const QString& message() const { return message_; }
  const std::vector<FeedbackSnip>& snips() const { return snips_; }
  /// What went wrong; empty in any other phase than `failed`.
  const QString& error() const { return error_; }

  /// Nothing is changed any more while it is on its way, nor after that.
  bool isEditable() const { return phase_ == Phase::editing || phase_ == Phase::failed; }
  bool canAddSnip() const { return isEditable() && snips_.size() < kMostSnips; }
  bool canSubmit() const { return isEditable() && !message_.trimmed().isEmpty(); }

  void setMessage(const QString& message);
  /// Does nothing unless `canAddSnip()`.
  void addSnip(const QByteArray& png);
  void removeSnip(int id);

  void startSending() { enter(Phase::sending); }
  void finish() { enter(Phase::sent); }
  /// Everything that was typed and attached stays.
  void fail(const QString& error) { enter(Phase::failed, error); }
  /// A new report, with nothing in it.
  virtual void reset();

 Q_SIGNALS:
  void changed();

 private:
  void enter(Phase phase, const QString& error = {});

  Phase phase_ = Phase::editing;
  QString message_;
  std::vector<FeedbackSnip> snips_;
  QString error_;
  int lastSnip_ = 0;
};

/// A bug report, feedback or a question.
class FeedbackModel final : public ReportModel {
  Q_OBJECT

 public:
  FeedbackCategory category() const { return category_; }
  void select(FeedbackCategory category);
  void cycleCategory(bool forward);
  void reset() override;

 private:
  FeedbackCategory category_ = FeedbackCategory::bug;
};

/// The wish for a new tool.
class SuggestModel final : public ReportModel {
  Q_OBJECT

 public:
  const QString& idea() const { return message(); }
};
