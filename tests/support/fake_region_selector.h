#pragma once

#include <QStringList>

#include <utility>
#include <vector>

#include "capture/region_selector.h"

/// Remembers what was asked for; the test is the user who drags, or does not.
class FakeRegionSelector final : public RegionSelector {
 public:
  void begin(const QString& label, const QString& icon, Completion completion) override {
    labels.append(label);
    icons.append(icon);
    hasLostKeyboard_ = false;
    completions_.push_back(std::move(completion));
  }

  bool hasUserTurnedAway() const override { return isSelecting() || hasLostKeyboard_; }
  bool isSelecting() const { return !completions_.empty(); }
  /// Ends the oldest selection.
  void select(const QByteArray& png) { end(png); }
  void cancel() { end(std::nullopt); }
  void loseKeyboard() {
    hasLostKeyboard_ = true;
    end(std::nullopt);
  }

  QStringList labels;
  QStringList icons;

 private:
  void end(std::optional<QByteArray> png) {
    const Completion completion = std::move(completions_.front());
    completions_.erase(completions_.begin());
    completion(std::move(png));
  }

  std::vector<Completion> completions_;
  bool hasLostKeyboard_ = false;
};
