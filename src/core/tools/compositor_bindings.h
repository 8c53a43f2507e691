#pragma once

#include <QLatin1StringView>
#include <QString>

#include <array>
#include <optional>
#include <vector>

#include "core/hotkeys/hotkey.h"

struct AppSettings;

/// Desktops that give a key combination to a program only through their own settings.
enum class Compositor { gnome, kde, sway, hyprland };

struct CompositorText {
  Compositor compositor;
  /// As `vantle doctor --bindings` knows it.
  QLatin1StringView id;
  /// As XDG_CURRENT_DESKTOP has it, among others perhaps.
  QLatin1StringView desktop;
  QLatin1StringView name;
  /// What to do with the snippet.
  QLatin1StringView usage;
};

inline constexpr std::array kCompositors = {
    CompositorText{Compositor::gnome, QLatin1StringView("gnome"), QLatin1StringView("GNOME"),
                   QLatin1StringView("GNOME"), QLatin1StringView("run this in a terminal, once")},
    CompositorText{Compositor::kde, QLatin1StringView("kde"), QLatin1StringView("KDE"), QLatin1StringView("KDE Plasma"),
                   QLatin1StringView("run this in a terminal, once, then log out and in again")},
    CompositorText{Compositor::sway, QLatin1StringView("sway"), QLatin1StringView("sway"), QLatin1StringView("sway"),
                   QLatin1StringView("add this to ~/.config/sway/config, then run: swaymsg reload")},
    CompositorText{Compositor::hyprland, QLatin1StringView("hyprland"), QLatin1StringView("Hyprland"),
                   QLatin1StringView("Hyprland"), QLatin1StringView("add this to ~/.config/hypr/hyprland.conf")},
};

const CompositorText& text(Compositor compositor);
/// The desktop in a list of names as XDG_CURRENT_DESKTOP has them ("ubuntu:GNOME"); none for others.
std::optional<Compositor> compositorOf(const QString& desktops);

/// A combination and what `vantle summon` is to be told when it is pressed.
struct BoundCommand {
  QString name;
  Hotkey hotkey;
  QString target;
};

/// The combinations that the application wants now: of enabled tools as the user has bound them, then its own.
std::vector<BoundCommand> boundCommands(const AppSettings& settings);

/// What binds the commands in that desktop, to be pasted as it stands; ends with a line break. `program` is the path
/// or name by which the desktop starts this program. A script that is run again replaces what it bound before.
QString bindingSnippet(Compositor compositor, std::vector<BoundCommand> commands, const QString& program);
/// For any other desktop: a line for each, the combination and the command.
QString bindingList(const std::vector<BoundCommand>& commands, const QString& program);
