#pragma once

#include <QByteArrayList>
#include <QStringList>
#include <QThread>

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "platform/mac/mac_api.h"
#include "platform/pasteboard.h"

/// The system on the other side of the seam: records what is asked of it and calls back as macOS would.
struct FakeSystem {
  struct Post {
    QString what;
    QThread* thread;
    std::chrono::steady_clock::time_point at;
  };

  bool post(const QString& what) {
    const std::lock_guard lock(mutex);
    posts.push_back({what, QThread::currentThread(), std::chrono::steady_clock::now()});
    return what != failing;
  }
  QStringList posted() {
    const std::lock_guard lock(mutex);
    QStringList texts;
    for (const Post& post : posts) texts << post.what;
    return texts;
  }
  void* retain() {
    ++handles;
    return this;
  }
  void release(void* handle) {
    if (handle) --handles;
  }

  /// Handles given out and not yet given back.
  int handles = 0;
  const mac::HotkeyListener* listener = nullptr;
  mac::HotkeyResult answer = mac::HotkeyResult::registered;
  std::mutex mutex;
  std::vector<Post> posts;
  QString failing;
  bool isSecureInputOn = false;
  bool isPointerPressed = false;
  /// What the keys type.
  std::map<std::uint32_t, char16_t> layout;
  std::pair<void (*)(void*), void*> layoutWatch{};
  /// The key that is watched, and who is told.
  std::uint32_t watchedKey = 0;
  std::pair<void (*)(void*), void*> keyWatch{};
  bool isWatchRefused = false;
  bool hasWindowServer = true;
  bool isDark = false;
  std::pair<void (*)(void*, bool), void*> appearanceWatch{};
  std::vector<mac::Panel> ordered;
  std::map<void*, std::pair<void (*)(void*), void*>> watches;
  bool otherIsActive = true;
  int activationsReturned = 0;
  mac::Version version{14, 5, 0};
  /// What is on the pasteboard, by its uniform type.
  std::map<QByteArray, QByteArray> held;
  QByteArrayList copiedFiles;
  /// All kinds of all things on it, and how often they were replaced.
  std::vector<PasteboardFlavour> pieces;
  int pasteboardChanges = 0;
  std::int32_t activeProcess = 0;
  std::map<std::int32_t, QByteArray> bundles;
  /// Pages of the privacy settings on which this program is switched on.
  QStringList allowed;
  /// Prompts and pages that were asked for.
  QStringList asked;
  mac::LoginItem loginItem = mac::LoginItem::off;
  bool isLoginItemRefused = false;
  mac::DisplayArea captured{};
  std::vector<std::uint32_t> excluded;
  QByteArray png = "PNG";
};

/// The one that is asked; a test makes it.
extern FakeSystem* fake;
