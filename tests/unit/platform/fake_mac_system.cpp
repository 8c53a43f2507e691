#include "unit/platform/fake_mac_system.h"

#include <span>

using namespace Qt::StringLiterals;

FakeSystem* fake = nullptr;

namespace mac {

void* installHotkeyHandler(const HotkeyListener* listener) {
  fake->listener = listener;
  return fake->retain();
}
void removeHotkeyHandler(void* handler) { fake->release(handler); }
HotkeyResult registerHotkey(uint32_t, uint32_t, uint32_t, void** registration) {
  if (fake->answer == HotkeyResult::registered) *registration = fake->retain();
  return fake->answer;
}
void unregisterHotkey(void* registration) { fake->release(registration); }
void* createKeySource() { return nullptr; }
void releaseKeySource(void*) {}
bool typeText(void*, const uint16_t* text, uint32_t length) {
  return fake->post(QString::fromUtf16(reinterpret_cast<const char16_t*>(text), length));
}
bool pressKey(void*, uint32_t keyCode, uint32_t modifiers) {
  return fake->post(u"<%1 %2>"_s.arg(keyCode).arg(modifiers));
}
bool isSecureInputOn() { return fake->isSecureInputOn; }
uint16_t characterOnKey(uint32_t keyCode, uint32_t) {
  const auto found = fake->layout.find(keyCode);
  return found == fake->layout.end() ? 0 : found->second;
}
void* watchKey(uint32_t keyCode, void (*pressed)(void*), void* context) {
  if (fake->isWatchRefused) return nullptr;
  fake->watchedKey = keyCode;
  fake->keyWatch = {pressed, context};
  return fake->retain();
}
void stopWatchingKey(void* watch) {
  fake->keyWatch = {};
  fake->release(watch);
}
void* watchLayout(void (*changed)(void*), void* context) {
  fake->layoutWatch = {changed, context};
  return fake->retain();
}
void stopWatchingLayout(void* watch) {
  fake->layoutWatch = {};
  fake->release(watch);
}
bool isPointerPressed() { return fake->isPointerPressed; }
void styleAsPanel(void*, Panel) {}
void orderFront(void*, Panel kind) { fake->ordered.push_back(kind); }
void makeKey(void*, Panel kind) { fake->ordered.push_back(kind); }
bool canTakeKeyboard(void*) { return true; }
void* watchResignKey(void* view, void (*resigned)(void*), void* context) {
  fake->watches[view] = {resigned, context};
  ++fake->handles;
  return view;
}
void stopWatching(void* watch) {
  fake->watches.erase(watch);
  --fake->handles;
}
void* activeApplication() { return fake->otherIsActive ? fake->retain() : nullptr; }
void returnActivation(void* application) { fake->activationsReturned += application ? 1 : 0; }
void releaseApplication(void* application) { fake->release(application); }
bool isAccessibilityTrusted() { return fake->allowed.contains(u"Privacy_Accessibility"_s); }
void promptForAccessibility() { fake->asked.append(u"typing"_s); }
bool isScreenCaptureAllowed() { return fake->allowed.contains(u"Privacy_ScreenCapture"_s); }
void requestScreenCapture() { fake->asked.append(u"screen"_s); }
bool openPrivacyPage(const char* page) {
  fake->asked.append(QString::fromLatin1(page));
  return true;
}
uint32_t windowNumber(void*) { return 77; }
void captureDisplay(const DisplayArea* area, const uint32_t* windows, uint32_t count,
                    void (*captured)(void*, const void*, long long, const char*), void* context) {
  fake->captured = *area;
  fake->excluded.assign(windows, windows + count);
  const auto answer = [captured, context] {
    if (fake->png.isEmpty()) return captured(context, nullptr, 0, "n\xC3\xB6");
    captured(context, fake->png.constData(), fake->png.size(), nullptr);
  };
  std::thread(answer).join();
}
void* startNetworkPath(void (*)(void*, bool), void*) { return fake->retain(); }
void stopNetworkPath(void* path) { fake->release(path); }
void readPasteboard(const char* type, void (*take)(void*, const void*, unsigned long), void* context) {
  const auto held = fake->held.find(type);
  if (held != fake->held.end())
    take(context, held->second.constData(), static_cast<unsigned long>(held->second.size()));
}
void readPasteboardFiles(void (*take)(void*, const char*), void* context) {
  for (const QByteArray& url : fake->copiedFiles) take(context, url.constData());
}
long long pasteboardChangeCount() { return fake->pasteboardChanges; }
void readPasteboardPieces(void (*take)(void*, const PasteboardPiece*), void* context) {
  for (const PasteboardFlavour& flavour : fake->pieces) {
    const QByteArray name = flavour.name.toUtf8();
    const PasteboardPiece piece{static_cast<std::uint32_t>(flavour.item), name.constData(), flavour.bytes.constData(),
                                static_cast<unsigned long>(flavour.bytes.size())};
    take(context, &piece);
  }
}
bool writePasteboardPieces(const PasteboardPiece* pieces, std::uint32_t count) {
  ++fake->pasteboardChanges;
  fake->pieces.clear();
  for (const PasteboardPiece& piece : std::span(pieces, count))
    fake->pieces.push_back({QString::fromUtf8(piece.type),
                            QByteArray(static_cast<const char*>(piece.bytes), static_cast<qsizetype>(piece.length)),
                            static_cast<int>(piece.item)});
  return true;
}
std::int32_t activeProcess() { return fake->activeProcess; }
void bundleOfProcess(std::int32_t process, void (*take)(void*, const char*), void* context) {
  if (fake->bundles.contains(process)) take(context, fake->bundles[process].constData());
}
bool playSound(const char*) { return true; }
void beep() {}
LoginItem loginItemState() { return fake->loginItem; }
bool setLoginItem(bool enabled, void (*refused)(void*, const char*), void* context) {
  if (fake->isLoginItemRefused) {
    refused(context, "n\xC3\xB6");
    return false;
  }
  fake->loginItem = enabled ? LoginItem::on : LoginItem::off;
  return true;
}
void openLoginItemSettings() {}
Version systemVersion() { return fake->version; }
bool isMotionReduced() { return false; }
bool symbolSize(const char* name, double* width, double* height) {
  *width = 30;
  *height = 20;
  return QByteArray(name) == "doc.on.doc";
}
bool drawSymbol(const char*, uint32_t width, uint32_t height, unsigned char* pixels) {
  fake->asked.append(u"%1x%2"_s.arg(width).arg(height));
  std::fill_n(pixels + 3, 1, 255);
  return true;
}
bool hasWindowServer() { return fake->hasWindowServer; }
void forceDarkAppearance(bool dark) {
  fake->isDark = dark;
  if (fake->appearanceWatch.first) fake->appearanceWatch.first(fake->appearanceWatch.second, dark);
}
void* watchAppearance(void (*changed)(void*, bool), void* context) {
  fake->appearanceWatch = {changed, context};
  changed(context, fake->isDark);
  return fake->retain();
}
void stopWatchingAppearance(void* watch) {
  fake->appearanceWatch = {};
  fake->release(watch);
}
void activate() {}

}  // namespace mac
