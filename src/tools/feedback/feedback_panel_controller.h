#pragma once

#include "tools/feedback/report_panel_controller.h"

inline constexpr QLatin1StringView kFeedbackID{"feedback"};
inline constexpr QLatin1StringView kSuggestID{"suggest-tool"};

/// The panel of Feedback: the shared flow, and a choice of what kind of report it is.
class FeedbackPanelController final : public ReportPanelController {
  Q_OBJECT

 public:
  FeedbackPanelController(Services services, FeedbackClient& client, PanelFactory makePanel);

  FeedbackModel& model() override { return model_; }
  const ReportTexts& texts() const override { return texts_; }
  QString placeholder() const override { return info(model_.category()).placeholder; }
  void select(FeedbackCategory category) { model_.select(category); }
  void cycleCategory(bool forward) { model_.cycleCategory(forward); }

 private:
  QString toolID() const override { return kFeedbackID; }
  void send(const JobRef& job, Done done) override;
  bool handleOwnKey(const KeyPress& key) override;

  FeedbackClient& client_;
  FeedbackModel model_;
  const ReportTexts texts_ = ReportTexts::feedback();
};

/// The panel of Suggest a Tool.
class SuggestPanelController final : public ReportPanelController {
  Q_OBJECT

 public:
  SuggestPanelController(Services services, SuggestClient& client, PanelFactory makePanel);

  SuggestModel& model() override { return model_; }
  const ReportTexts& texts() const override { return texts_; }
  QString placeholder() const override;

 private:
  QString toolID() const override { return kSuggestID; }
  void send(const JobRef& job, Done done) override;

  SuggestClient& client_;
  SuggestModel model_;
  const ReportTexts texts_ = ReportTexts::suggestion();
};
