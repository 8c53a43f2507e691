#pragma once

#include <QStringList>

#include <map>
#include <set>
#include <vector>

#include "core/hotkeys/hotkey.h"
#include "platform/hotkey_backend.h"
#include "platform/key_events.h"
#include "platform/key_target.h"
#include "platform/network_path.h"
#include "platform/pasteboard.h"
#include "platform/permissions.h"
#include "platform/selected_text.h"
#include "platform/sounds.h"
#include "platform/system_info.h"

/// Remembers registrations; refuses the combinations in `taken`, and those that it has given away.
class FakeHotkeys final : public HotkeyBackend {
 public:
  void install(Pressed pressed) override {
    ++installs;
    pressed_ = std::move(pressed);
  }
  std::expected<void, HotkeyRefusal> registerHotkey(std::uint32_t id, std::uint32_t keyCode,
                                                    std::uint32_t carbonModifiers) override {
    const Hotkey hotkey{keyCode, carbonModifiers};
    if (std::ranges::find(taken, hotkey) != taken.end() || isRegistered(hotkey))
      return std::unexpected(HotkeyRefusal{HotkeyRefusal::Reason::taken});
    registered[id] = hotkey;
    return {};
  }
  void unregisterHotkey(std::uint32_t id) override { registered.erase(id); }
  void watchTriggers(const std::function<void()>& changed) override { giveMore = changed; }
  QString systemTrigger(std::uint32_t, std::uint32_t) const override { return trigger; }

  /// Presses a combination as the user would; nothing happens when nobody has it.
  void press(const Hotkey& hotkey) {
    for (const auto& [id, owned] : std::map(registered))
      if (owned == hotkey) pressed_(id);
  }
  bool isRegistered(const Hotkey& hotkey) const {
    return std::ranges::any_of(registered, [&](const auto& entry) { return entry.second == hotkey; });
  }

  std::vector<Hotkey> taken;
  std::map<std::uint32_t, Hotkey> registered;
  int installs = 0;
  /// What the system calls every combination.
  QString trigger;
  /// The system has something else to say about combinations.
  std::function<void()> giveMore;

 private:
  Pressed pressed_;
};

/// Records what would be typed; `performed` is what the program that it is typed into does.
class FakeKeyEvents final : public KeyEvents {
 public:
  using KeyEvents::perform;
  void perform(KeySequence steps, std::stop_token stop, Done done) override {
    sequences.push_back(std::move(steps));
    stops.push_back(std::move(stop));
    if (performed) performed();
    if (isSlow)
      waiting = std::move(done);
    else if (done)
      done(result);
  }
  std::vector<KeySequence> sequences;
  std::vector<std::stop_token> stops;
  std::function<void()> performed;
  /// Until somebody calls `waiting`.
  bool isSlow = false;
  Done waiting;
  std::expected<void, KeyEventError> result;
};

/// A system whose settings have a page for each permission; remembers what was asked of it.
class FakePermissions final : public Permissions {
 public:
  PermissionState state(Permission permission) const override {
    ++reads;
    return permission == Permission::accessibility ? granted(trusted) : screenRecording;
  }
  QString remedy(Permission permission) const override {
    return state(permission) == PermissionState::granted ? QString() : QStringLiteral("Enable Vantle in Settings.");
  }
  QString shortcutsRemedy() const override { return shortcuts; }
  void request(Permission) override { ++prompts; }
  bool hasSettingsPage(Permission) const override { return true; }
  void openSettingsPage(Permission permission) override { pages.push_back(permission); }

  bool trusted = true;
  PermissionState screenRecording = PermissionState::granted;
  QString shortcuts;
  int prompts = 0;
  std::vector<Permission> pages;
  mutable int reads = 0;

 private:
  static PermissionState granted(bool isGranted) {
    return isGranted ? PermissionState::granted : PermissionState::notGranted;
  }
};

/// Reports what `report` is called with.
class FakeNetworkPath final : public NetworkPath {
 public:
  void start(Report reporter) override { report = std::move(reporter); }
  Report report;
};

/// Remembers what was put on it, and offers what the test has put into `data`. `contents` is what `keep` finds and
/// `restore` puts back; what is written becomes it.
class FakePasteboard final : public Pasteboard {
 public:
  void writeText(const QString& text) override {
    texts.append(text);
    copy({{{QStringLiteral("text"), text.toUtf8()}}});
  }
  void writeImage(const QByteArray& png) override {
    images.push_back(png);
    copy({{{QStringLiteral("image"), png}}});
  }
  std::int64_t changeCount() const override { return changes; }
  bool isChangeBy(KeyTarget program, std::int64_t change, std::optional<InputTime> touch) const override {
    const auto known = copies.find(change);
    return known != copies.end() && known->second.first == program && (!touch || known->second.second < *touch);
  }
  void readText(const JobRef& job, ReadText answer) override {
    job.later([this, answer = std::move(answer)] { answer(text()); });
  }
  void keep(const JobRef& job, Kept answer) override {
    job.later([this, answer = std::move(answer)] { answer(contents); });
  }
  void restore(const PasteboardContents& kept) override {
    restored.push_back(kept);
    copy(kept);
  }
  void read(const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) override {
    ++reads;
    job.later([this, formats, answer = std::move(answer)] {
      for (const PasteboardFormat format : formats)
        if (const auto found = data.find(format); found != data.end())
          return answer(PasteboardData{format, found->second});
      answer(std::nullopt);
    });
  }

  /// A program puts this on it.
  void copy(PasteboardContents copied) {
    contents = std::move(copied);
    ++changes;
  }
  /// The same, of a program that has a name, because of something that happened at `time`.
  void copy(PasteboardContents copied, KeyTarget program, InputTime time = {}) {
    copy(std::move(copied));
    copies[changes] = {program, time};
  }
  /// Its plain text, the flavour "text".
  std::optional<QString> text() const {
    for (const PasteboardFlavour& flavour : contents.flavours)
      if (flavour.name == QStringLiteral("text")) return QString::fromUtf8(flavour.bytes);
    return std::nullopt;
  }

  QStringList texts;
  std::vector<QByteArray> images;
  std::map<PasteboardFormat, QByteArray> data;
  int reads = 0;
  PasteboardContents contents;
  std::vector<PasteboardContents> restored;
  std::int64_t changes = 0;
  std::map<std::int64_t, std::pair<KeyTarget, InputTime>> copies;
};

class FakeKeyTargets final : public KeyTargets {
 public:
  KeyTarget current() const override { return target; }
  std::unique_ptr<InputWatch> watchInput() const override { return std::make_unique<Watch>(*this); }
  std::unique_ptr<EscapeWatch> watchEscape(const std::function<void()>& pressed) const override {
    if (!seesEscape) return nullptr;
    onEscape = pressed;
    return std::make_unique<Escapes>(*this);
  }

  KeyTarget target = KeyTarget{7};
  /// Of a key or a button, whenever it is looked for.
  std::optional<InputTime> touch;
  bool seesEscape = true;
  /// Null while nobody watches.
  mutable std::function<void()> onEscape;

 private:
  struct Escapes final : EscapeWatch {
    explicit Escapes(const FakeKeyTargets& owner) : targets(owner) {}
    ~Escapes() override { targets.onEscape = nullptr; }
    const FakeKeyTargets& targets;
  };
  struct Watch final : InputWatch {
    explicit Watch(const FakeKeyTargets& owner) : touch(owner.touch) {}
    std::optional<InputTime> firstTouch() override { return touch; }
    const std::optional<InputTime>& touch;
  };
};

/// Hands over `text`. In a terminal each line is run, and the copy shortcut means something else, but not on all
/// systems.
class FakeSelectedText final : public SelectedText {
 public:
  bool isCopiedByShortcut(KeyTarget) const override { return !isTerminal || copiesInTerminals; }
  bool runsLines(KeyTarget) const override { return isTerminal; }
  void read(KeyTarget, const JobRef& job, Answer answer) override {
    job.later([this, answer = std::move(answer)] { answer(text); });
  }
  std::optional<QString> text;
  bool isTerminal = false;
  bool copiesInTerminals = false;
};

class FakeSounds final : public Sounds {
 public:
  void playCompletion() override { ++completions; }
  void beep() override { ++beeps; }
  int completions = 0;
  int beeps = 0;
};

class FakeSystem final : public SystemInfo {
 public:
  QString osVersion() const override { return QStringLiteral("Testix 1"); }
  QString thisComputer() const override { return QStringLiteral("this computer"); }
  QString systemName() const override { return QStringLiteral("Testix"); }
  QString fileManager() const override { return QStringLiteral("your file manager"); }
  QString systemSettings() const override { return QStringLiteral("Settings"); }
  bool isMotionReduced() const override { return motionReduced; }
  QString shortcutOwnerHint() const override { return {}; }
  bool motionReduced = true;
};
