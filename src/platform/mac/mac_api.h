#pragma once

#include <stdint.h>

/// The seam between Qt and Objective-C: integers, doubles, char* and function pointers with a context, so that neither
/// side sees the other's headers. Opaque handles are void*; whoever gets one gives it back to the named function.
/// Main thread only, but for the key events, which any single thread may post, and where a callback says otherwise.
namespace mac {

// Global hot keys.

/// Told from inside the system's event handler which of our hot keys went down. Must outlive the handler.
struct HotkeyListener {
  void (*pressed)(void* context, uint32_t id);
  void* context;
};

enum class HotkeyResult : int32_t { registered, taken, failed };

/// Null when the system refuses. End with removeHotkeyHandler.
void* installHotkeyHandler(const HotkeyListener* listener);
void removeHotkeyHandler(void* handler);
/// Sets `*registration` on success; end with unregisterHotkey. Modifiers are a Carbon mask.
HotkeyResult registerHotkey(uint32_t id, uint32_t keyCode, uint32_t carbonModifiers, void** registration);
void unregisterHotkey(void* registration);

// Synthetic key events, posted to the session. False when the system made no event.

/// Null is a valid source too. End with releaseKeySource.
void* createKeySource();
void releaseKeySource(void* source);
/// One key-down and key-up that carry `length` UTF-16 units, without modifiers. Applications take up to 20 units.
bool typeText(void* source, const uint16_t* text, uint32_t length);
/// One key-down and key-up with exactly these Carbon modifiers.
bool pressKey(void* source, uint32_t keyCode, uint32_t carbonModifiers);
/// Whether some program keeps all keys to itself, for a password say.
bool isSecureInputOn();
/// Calls `pressed` on the main thread after each press of the key without modifiers in another application, which gets
/// it too. Null when the system refuses; told of nothing unless isAccessibilityTrusted(). End with stopWatchingKey.
void* watchKey(uint32_t keyCode, void (*pressed)(void* context), void* context);
void stopWatchingKey(void* watch);

// The keyboard's layout.

/// The first UTF-16 unit that a key types with these Carbon modifiers held, 0 when it types nothing.
uint16_t characterOnKey(uint32_t keyCode, uint32_t carbonModifiers);
/// Calls `changed` on the main thread after the user has chosen another layout. End with stopWatchingLayout.
void* watchLayout(void (*changed)(void* context), void* context);
void stopWatchingLayout(void* watch);

// Panels. `view` is the NSView of a window that Qt created as a panel (Qt::Tool).

enum class Panel : int32_t { palette, toast, overlay };

/// Makes the window a panel above those of all applications, an overlay above the menu bar too. Qt takes part of this
/// back at times, so it is due again at every show.
void styleAsPanel(void* view, Panel kind);
/// Shows the window in front whichever application is active.
void orderFront(void* view, Panel kind);
/// The same, and makes it the key window with `view` as the receiver of its keys. An overlay activates the application:
/// no other may set the cursor.
void makeKey(void* view, Panel kind);
/// Whether the window takes the keyboard when it is made key.
bool canTakeKeyboard(void* view);
/// Calls `resigned` on the main thread, from inside AppKit, each time the window stops being the key window. End with
/// stopWatching.
void* watchResignKey(void* view, void (*resigned)(void* context), void* context);
void stopWatching(void* watch);

/// Whether a button of the pointer is down, wherever that is.
bool isPointerPressed();

/// The application the user works in, null when that is this one. End with releaseApplication.
void* activeApplication();
/// Makes `application` the active one again if this one has become active since; null is ignored.
void returnActivation(void* application);
void releaseApplication(void* application);
/// The process of the application that keys go to, 0 when that is this one or there is none.
int32_t activeProcess();
/// Hands over the bundle identifier of the application with that process; nothing for a program that is in no bundle.
void bundleOfProcess(int32_t process, void (*take)(void* context, const char* identifier), void* context);

// Permissions.

bool isAccessibilityTrusted();
/// Asks the system to show its prompt, which leads to System Settings; returns at once.
void promptForAccessibility();
bool isScreenCaptureAllowed();
/// The same for capturing the screen. The system asks once; after a refusal it stays silent.
void requestScreenCapture();
/// Shows a page of Privacy & Security in System Settings, "Privacy_Accessibility" say. False when nothing opens it.
bool openPrivacyPage(const char* page);

// The screen.

/// A rectangle of a display. Points, y downwards: the display's own corner counts from the main display's, the
/// rectangle's from there.
struct DisplayArea {
  double displayX;
  double displayY;
  double x;
  double y;
  double width;
  double height;
  uint32_t pixelWidth;
  uint32_t pixelHeight;
};

/// What the window server knows the window by.
uint32_t windowNumber(void* view);
/// Captures the rectangle without the pointer and without the `count` windows of these numbers, and calls `captured`
/// exactly once, on any thread: with a PNG, which lives until it returns, or with the reason in UTF-8 why there is
/// none.
void captureDisplay(const DisplayArea* area, const uint32_t* excludedWindows, uint32_t count,
                    void (*captured)(void* context, const void* png, long long size, const char* failure),
                    void* context);

// The way out to a network.

/// Watches all interfaces and calls `report` on a serial queue, at once and at every change. End with stopNetworkPath.
void* startNetworkPath(void (*report)(void* context, bool satisfied), void* context);
/// Waits for a report that is being made; none is made afterwards.
void stopNetworkPath(void* path);

// The general pasteboard.

/// Calls `take` with what it holds of a uniform type ("public.png") before returning; not at all when there is none.
void readPasteboard(const char* type, void (*take)(void* context, const void* bytes, unsigned long length),
                    void* context);
/// Calls `take` with the URL of each file on it, in their order.
void readPasteboardFiles(void (*take)(void* context, const char* url), void* context);
/// Moves whenever any program puts something on it.
long long pasteboardChangeCount();

/// One kind of data of one of the things on it.
struct PasteboardPiece {
  uint32_t item;
  /// A uniform type.
  const char* type;
  const void* bytes;
  unsigned long length;
};

/// Calls `take` with all that it holds, before returning; a piece lives for the call.
void readPasteboardPieces(void (*take)(void* context, const PasteboardPiece* piece), void* context);
/// Replaces all that it holds by these, the pieces of an item one after the other; without any it is empty. False when
/// the system refuses.
bool writePasteboardPieces(const PasteboardPiece* pieces, uint32_t count);

// The system's symbols.

/// The proportions of a symbol ("doc.on.doc"). False when the system has none of that name.
bool symbolSize(const char* name, double* width, double* height);
/// Draws it in black to fill `pixels`, which are clear: rows of 4 bytes a pixel (red, green, blue, alpha;
/// premultiplied).
bool drawSymbol(const char* name, uint32_t width, uint32_t height, unsigned char* pixels);

// Sounds.

/// Plays a sound of the system by its name, from the start; returns at once. False when there is none of that name.
bool playSound(const char* name);
void beep();

// Starting at login.

enum class LoginItem : int32_t { off, on, awaitsApproval, unavailable };

LoginItem loginItemState();
/// False when the system refuses; `refused` is then called with its reason in UTF-8 before the function returns.
bool setLoginItem(bool enabled, void (*refused)(void* context, const char* reason), void* context);
void openLoginItemSettings();

// The system itself.

struct Version {
  int32_t majorVersion;
  int32_t minorVersion;
  int32_t patchVersion;
};

Version systemVersion();
/// Whether this process belongs to a session with windows: one that came over the network does not. Before any other.
bool hasWindowServer();
bool isMotionReduced();
/// True: the whole application is dark. False: it follows the system.
void forceDarkAppearance(bool dark);
/// Calls `changed` on the main thread, at once and whenever the application's windows become dark or light. End with
/// stopWatchingAppearance.
void* watchAppearance(void (*changed)(void* context, bool dark), void* context);
void stopWatchingAppearance(void* watch);
/// Makes this the active application, whichever is active now.
void activate();

}  // namespace mac
