#pragma once

#include <QString>

#include <array>

struct WellKnownTemplate {
  QLatin1StringView fileName;
  QStringView contents;
};

/// The files that agents look for, each with a skeleton to fill in.
extern const std::array<WellKnownTemplate, 5> wellKnownTemplates;

/// Null text for a file that is not one of them.
QString wellKnownTemplate(const QString& fileName);
