#include <map>

#include "base/logging.h"
#include "platform/mac/mac_api.h"
#include "platform/mac/mac_backends.h"
#include "platform/mac/main_thread.h"

namespace {

class MacHotkeys final : public HotkeyBackend {
 public:
  ~MacHotkeys() override {
    for (const auto& [id, registration] : registrations_) mac::unregisterHotkey(registration);
    if (handler_) mac::removeHotkeyHandler(handler_);
  }

  void install(Pressed pressed) override {
    pressed_ = std::move(pressed);
    if (!handler_) handler_ = mac::installHotkeyHandler(&listener_);
    if (!handler_) qCWarning(lcHotkeys) << "the system refuses a handler for global shortcuts";
  }

  std::expected<void, HotkeyRefusal> registerHotkey(std::uint32_t id, std::uint32_t keyCode,
                                                    std::uint32_t carbonModifiers) override {
    void* registration = nullptr;
    switch (mac::registerHotkey(id, keyCode, carbonModifiers, &registration)) {
      case mac::HotkeyResult::registered:
        registrations_.emplace(id, registration);
        return {};
      case mac::HotkeyResult::taken:
        return std::unexpected(HotkeyRefusal{HotkeyRefusal::Reason::taken});
      case mac::HotkeyResult::failed:
        break;
    }
    return std::unexpected(HotkeyRefusal{HotkeyRefusal::Reason::unavailable});
  }

  void unregisterHotkey(std::uint32_t id) override {
    const auto found = registrations_.find(id);
    if (found == registrations_.end()) return;
    mac::unregisterHotkey(found->second);
    registrations_.erase(found);
  }

 private:
  static void hotkeyPressed(void* context, std::uint32_t id) {
    auto* self = static_cast<MacHotkeys*>(context);
    mac::onMainThread(self->scope_, [self, id] { self->pressed_(id); });
  }

  Pressed pressed_;
  mac::HotkeyListener listener_{hotkeyPressed, this};
  void* handler_ = nullptr;
  std::map<std::uint32_t, void*> registrations_;
  QObject scope_;
};

}  // namespace

std::unique_ptr<HotkeyBackend> mac::makeHotkeys() { return std::make_unique<MacHotkeys>(); }
