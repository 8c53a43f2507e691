#include "services/usage_meter.h"

#include <QLocale>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Label {
  QLatin1StringView metric;
  QLatin1StringView text;
};

constexpr std::array kLabels = {
    Label{QLatin1StringView("answers"), QLatin1StringView("Answers")},
    Label{QLatin1StringView("text"), QLatin1StringView("Text")},
    Label{QLatin1StringView("image_answers"), QLatin1StringView("Image answers")},
    Label{QLatin1StringView("image_generate"), QLatin1StringView("Image generation")},
};

}  // namespace

double UsageMeter::fraction() const {
  return usage.limit <= 0 ? 1.0 : std::clamp(double(usage.used) / double(usage.limit), 0.0, 1.0);
}

QString UsageMeter::counts() const {
  const QLocale locale;
  return u"%1 of %2"_s.arg(locale.toString(usage.used), locale.toString(usage.limit));
}

QString UsageMeter::remaining() const {
  if (isUsedUp()) return u"None left this month"_s;
  return QLocale().toString(usage.limit - usage.used) + u" left this month"_s;
}

std::vector<UsageMeter> usageMeters(const std::map<QString, MetricUsage>& metrics) {
  std::vector<UsageMeter> meters;
  for (const Label& label : kLabels)
    if (const auto found = metrics.find(label.metric); found != metrics.end())
      meters.push_back({found->first, label.text, found->second});
  for (const auto& [metric, usage] : metrics)
    if (std::ranges::find(kLabels, metric, &Label::metric) == kLabels.end()) meters.push_back({metric, metric, usage});
  return meters;
}
