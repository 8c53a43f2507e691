#pragma once

#include "app/app_context.h"
#include "support/fake_region_selector.h"
#include "support/service_world.h"
#include "support/world.h"

/// A whole core with the tools registered, and the context that windows are made with. Combinations in `taken` are
/// refused.
struct AppStage {
  explicit AppStage(std::vector<Hotkey> taken = {}) {
    world.hotkeyBackend.taken = std::move(taken);
    world.bootstrap();
    sounds = give<FakeSounds>(world.system.sounds);
    permissions = give<FakePermissions>(world.system.permissions);
  }

  World world;
  FakeSounds* sounds = nullptr;
  FakePermissions* permissions = nullptr;
  FakeSettingsOpener opener;
  FakeLauncherOpener launcher;
  FakeWindowOpener windows;
  FakeHttp http;
  FakeVault vault;
  FakeBuiltIn builtIn;
  Services services{world.folders, http, vault, builtIn, world.clock};
  FakeFreshStart freshStart;
  DataEraser eraser{{vault, *world.system.loginItem, freshStart},
                    DataRemoval(world.folders, world.directory.filePath(QStringLiteral("defaults.ini"))),
                    {UserCredential::kServiceAccount}};
  FakeRegionSelector regions;
  AppContext context{world.folders, world.system,    world.clock,  world.settings, world.preferences, world.network,
                     world.hotkeys, world.registry,  world.toasts, opener,         launcher,          windows,
                     services,      world.analytics, eraser,       regions};

 private:
  template <class Fake, class Interface>
  static Fake* give(std::unique_ptr<Interface>& place) {
    auto fake = std::make_unique<Fake>();
    Fake* const raw = fake.get();
    place = std::move(fake);
    return raw;
  }
};
