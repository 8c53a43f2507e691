#include "core/settings/folders.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <array>

namespace {

/// Earlier names of the settings folder, the younger first.
constexpr std::array kLegacyNames = {QLatin1StringView("QuarnelForMac"), QLatin1StringView("Brindle")};

}  // namespace

Folders Folders::standard() { return {QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)}; }

void Folders::migrateLegacyFolder() const {
  if (QFileInfo::exists(vantle())) return;
  for (const auto name : kLegacyNames) {
    const QString legacy = applicationSupport + QLatin1Char('/') + name;
    if (!QFileInfo(legacy).isDir()) continue;
    QDir().rename(legacy, vantle());
    return;
  }
}
