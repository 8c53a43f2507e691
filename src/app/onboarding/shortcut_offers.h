#pragma once

#include <QObject>
#include <QString>

#include <optional>
#include <vector>

#include "core/hotkeys/app_shortcuts.h"

class HotkeyCenter;
class ToolRegistry;

/// The shortcuts that other programs hold, each with a free combination that can take its place. Main thread only.
class ShortcutOffers : public QObject {
  Q_OBJECT

 public:
  struct Offer {
    /// Empty for the application's own shortcuts, which cannot be changed.
    QString toolID;
    QString name;
    Hotkey refused;
    /// What is free, or what the tool has now; none for the application's own and when everything is taken.
    std::optional<Hotkey> free;
    bool isAccepted = false;
  };

  ShortcutOffers(HotkeyCenter& hotkeys, const ToolRegistry& registry) : hotkeys_(hotkeys), registry_(registry) {}

  /// Asks anew what is refused and what is free; earlier offers are forgotten.
  void refresh();
  const std::vector<Offer>& offers() const { return offers_; }
  /// Binds the tool to the combination on offer.
  void accept(const QString& toolID);
  /// How many are still not to be had.
  int openCount() const;

 Q_SIGNALS:
  void changed();

 private:
  QString nameOf(const QString& toolID, const Hotkey& refused) const;

  HotkeyCenter& hotkeys_;
  const ToolRegistry& registry_;
  std::vector<Offer> offers_;
};

/// Whether the system keeps one of the application's own shortcuts from it.
bool isRefused(const HotkeyCenter& hotkeys, AppAction action);
