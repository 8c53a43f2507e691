#include "platform/xdg/xdg_login_item.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <optional>

#include "base/atomic_file.h"
#include "platform/xdg/desktop_entry.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kName = "/autostart/vantle.desktop"_L1;
/// Entries with every translation have a tenth of it, in bytes.
constexpr qint64 kMaximumSize = 256 * 1024;

bool isThere(const QString& path) {
  const QFileInfo info(path);
  return info.exists() || info.isSymLink();
}

/// None when it is no regular file of sensible size that can be read.
std::optional<DesktopEntry> read(const QString& path) {
  const QFileInfo info(path);
  if (!info.isFile() || info.size() > kMaximumSize) return std::nullopt;
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  return DesktopEntry(file.read(kMaximumSize));
}

bool isOn(const std::optional<DesktopEntry>& entry) {
  return entry && !entry->program().isEmpty() && entry->value(u"Hidden"_s) != "true"_L1 &&
         entry->value(u"X-GNOME-Autostart-enabled"_s) != "false"_L1;
}

}  // namespace

XdgLoginItem::Places XdgLoginItem::Places::standard() {
  Places places{QCoreApplication::applicationFilePath(),
                QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
                QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation)};
  places.configDirs.removeAll(places.configHome);
  return places;
}

XdgLoginItem::XdgLoginItem(Places places) : places_(std::move(places)), file_(places_.configHome + kName) {}

LoginItem::State XdgLoginItem::state() const {
  const bool on = isThere(file_) ? isOn(read(file_)) : isOnForWholeSystem();
  return on ? State::on : State::off;
}

std::expected<void, LoginItemError> XdgLoginItem::setEnabled(bool enabled) {
  if (!enabled) return isOnForWholeSystem() ? write(u"Hidden=true\n"_s) : remove();
  const auto entry = read(file_);
  if (isOn(entry) && entry->program() == places_.program) return {};
  return write(
      u"Comment=Tools for terminal coding agents\nExec=%1\nIcon=vantle\nTerminal=false\n"
      "X-GNOME-Autostart-enabled=true\n"_s.arg(execArgument(places_.program)));
}

bool XdgLoginItem::isOnForWholeSystem() const {
  const auto found =
      std::ranges::find_if(places_.configDirs, [](const QString& folder) { return isThere(folder + kName); });
  return found != places_.configDirs.end() && isOn(read(*found + kName));
}

std::expected<void, LoginItemError> XdgLoginItem::write(const QString& lines) const {
  // The entry takes the place of a link; what the link leads to belongs to somebody else.
  if (QFileInfo(file_).isSymLink()) {
    if (auto removed = remove(); !removed) return removed;
  }
  const QString text = u"[Desktop Entry]\nType=Application\nName=Vantle\n"_s + lines;
  const auto written = writeFileAtomically(file_, text.toUtf8());
  if (!written) return std::unexpected(LoginItemError{written.error().description()});
  return {};
}

std::expected<void, LoginItemError> XdgLoginItem::remove() const {
  QFile file(file_);
  if (!isThere(file_) || file.remove()) return {};
  return std::unexpected(LoginItemError{file_ + u": "_s + file.errorString()});
}
