#pragma once

#include <algorithm>

#include "support/fake_palette.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "support/fake_region_selector.h"
#include "support/service_world.h"
#include "tools/feedback/feedback_panel_controller.h"

/// A panel that remembers what became of it.
class CountingPanel final : public PalettePresenter {
 public:
  struct Counts {
    int presents = 0;
    int dismissals = 0;
    bool isUp() const { return presents > dismissals; }
  };

  explicit CountingPanel(Counts& counts) : counts_(counts) {}
  void present() override { ++counts_.presents; }
  void warmUp() override {}
  void dismiss() override { ++counts_.dismissals; }

 private:
  Counts& counts_;
};

/// Feedback and Suggest a Tool over fakes.
struct ReportWorld : ServiceWorld {
  ReportPanelController::Services panelServices() {
    return {RegionPicker({regions, permissions, system, toasts}), pasteboard, toasts, launcher, system};
  }
  static bool press(ReportPanelController& panel, std::uint32_t keyCode, bool shift = false) {
    return panel.handleKey({.keyCode = keyCode, .command = true, .shift = shift});
  }
  /// The header of the last request; null without one.
  QByteArray header(const QByteArray& name) const {
    const auto& headers = http.sent.back().headers;
    const auto found = std::ranges::find(headers, name, &HttpHeaders::value_type::first);
    return found == headers.end() ? QByteArray() : found->second;
  }

  FakePasteboard pasteboard;
  FakeRegionSelector regions;
  FakePermissions permissions;
  FakeSystem system;
  FakeToasts toasts;
  FakeLauncherOpener launcher;
  ReportSender sender{{services.environments, services.credential, http, system}};
  FeedbackClient feedbackClient{sender};
  SuggestClient suggestClient{sender};
  CountingPanel::Counts counts;
  FeedbackPanelController feedback{panelServices(), feedbackClient,
                                   [this] { return std::make_unique<CountingPanel>(counts); }};
  SuggestPanelController suggest{panelServices(), suggestClient, &SilentPanel::make};
};
