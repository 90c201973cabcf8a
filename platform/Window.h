// The one window that shows the pictures: what it tells its listener, and what may be asked of it.
//
// Threads: main only.
// Units:   points, origin at the lower left of the primary display, y up; pixels = points x scale.
// Errors:  none; what the window system does not tell is 0 or false.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Displays.h"
#include "platform/Geometry.h"

namespace lumivane {

// The modifier keys that are held down, as a set of bits.
using Modifiers = std::uint32_t;
inline constexpr Modifiers kNoModifiers = 0;
inline constexpr Modifiers kShiftModifier = 1U << 0;
inline constexpr Modifiers kControlModifier = 1U << 1;
inline constexpr Modifiers kAltModifier = 1U << 2;
inline constexpr Modifiers kMetaModifier = 1U << 3;  // the key with the logo: Super, Windows, Command

// What KeyEvent::character holds for keys that type no text.
inline constexpr char32_t kReturnCharacter = U'\r';  // Return and the keypad's Enter
inline constexpr char32_t kEscapeCharacter = U'\x1B';
inline constexpr char32_t kDeleteCharacter = U'\x7F';  // Delete and Backspace
inline constexpr char32_t kTabCharacter = U'\t';
inline constexpr char32_t kUpArrowCharacter = 0xF700;
inline constexpr char32_t kDownArrowCharacter = 0xF701;
inline constexpr char32_t kLeftArrowCharacter = 0xF702;
inline constexpr char32_t kRightArrowCharacter = 0xF703;
inline constexpr char32_t kF1Character = 0xF704;  // F2 and so on follow
inline constexpr char32_t kF11Character = kF1Character + 10;
inline constexpr char32_t kF35Character = kF1Character + 34;
inline constexpr char32_t kOtherKeyCharacter = 0xF8FF;  // any further key without text: Home, Print, ...

// A key that went down, as plain data: it may be kept and played back later.
struct KeyEvent {
  // The key's text as if neither Control, Alt, Meta nor Caps Lock were on; Shift applies ("z", "Z"). 0 = no key.
  char32_t character = 0;
  Modifiers modifiers = kNoModifiers;
  bool isRepeat = false;  // the key is being held down
  bool operator==(const KeyEvent&) const = default;
};

// What happens to the window, as calls. Whoever listens overrides what concerns it.
class WindowListener {
 public:
  virtual ~WindowListener() = default;

  // The content has a new size; comes many times while the user drags an edge.
  virtual void windowResized(SizePt /*content*/) {}
  // The size has come to rest.
  virtual void windowLiveResizeEnded() {}
  // Some of the content can be seen from now on, or none of it. Comes with true as often as what was drawn may be
  // lost and must be drawn anew. After a call with false the surface may be gone: no frame may then be in the making.
  virtual void windowExposed(bool /*exposed*/) {}
  virtual void windowMinimized(bool /*minimized*/) {}
  virtual void windowFullScreenChanged(bool /*fullScreen*/) {}
  // The window is now (mostly) on this display. Its list of displays may have changed as well.
  virtual void windowDisplayChanged(DisplayNumber /*display*/) {}
  virtual void windowScaleChanged(double /*scale*/) {}

  virtual void keyDown(const KeyEvent& /*event*/) {}
  // A modifier key went down or up; these are held now. The modifier keys themselves are no keyDown().
  virtual void modifiersChanged(Modifiers /*held*/) {}
  // Only while HostWindow::setReportsMouseMoves() is on. In points of the content, y up. A first report after the
  // window appears under a resting mouse is left out.
  virtual void mouseMoved(PointPt /*position*/) {}
  virtual void mouseDoubleClicked(PointPt /*position*/) {}
  // Right click, menu key or F10: the place where a menu should open, in points of the content, y up.
  virtual void menuRequested(PointPt /*position*/) {}

  // The user dropped a file or a folder of this machine on the window. The path is absolute; whether anything is there
  // is for a thread to ask that may wait for a disk.
  virtual void fileDropped(const std::string& /*path*/) {}

  // The user or the session asks the window to close; it closes right after this call.
  virtual void windowWillClose() {}
};

class HostWindow {
 public:
  virtual ~HostWindow() = default;

  // Place and size of the content. Wayland does not tell the place: there the origin is (0, 0).
  [[nodiscard]] virtual RectPt frame() const = 0;
  // The display that the window is on, by its number in Displays; 0 = none.
  [[nodiscard]] virtual DisplayNumber displayNumber() const = 0;
  // Device pixels a point.
  [[nodiscard]] virtual double scale() const = 0;

  [[nodiscard]] virtual bool isFullScreen() const = 0;
  // Fills its display but for the desktop's panels, with its borders on; false in full screen.
  [[nodiscard]] virtual bool isMaximized() const = 0;
  [[nodiscard]] virtual bool isMinimized() const = 0;
  // Whether any of the content can be seen, as far as the window system tells.
  [[nodiscard]] virtual bool isExposed() const = 0;

  virtual void show() = 0;
  virtual void toggleFullScreen() = 0;
  // Closes as if the user had asked for it.
  virtual void close() = 0;
  virtual void setTitle(std::string_view utf8) = 0;
  virtual void setCursorHidden(bool hidden) = 0;
  virtual void setReportsMouseMoves(bool reports) = 0;
};

}  // namespace lumivane
