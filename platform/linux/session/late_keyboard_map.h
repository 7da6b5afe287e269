#pragma once

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <array>
#include <functional>
#include <optional>

namespace vorrin {

/// Lets the toolkit learn of the X server's keyboard map only while this program is in front.
///
/// The server announces a map each time another keyboard is typed on, and a macro's keys come from
/// a keyboard of their own: whoever types beside it has a map announced with every key. The toolkit
/// then reads the whole map, name by name, on the main thread. That takes milliseconds in which no
/// timer fires, for text that nobody types into this program meanwhile. So the announcement is
/// kept, and made again when the program comes to the front. Does nothing on other systems of
/// windows.
class LateKeyboardMap : public QObject, private QAbstractNativeEventFilter {
 public:
  /// `isInFront` is asked at each announcement.
  explicit LateKeyboardMap(std::function<bool()> isInFront);

  /// To be called when the program may have come to the front.
  void update();

 private:
  using Announcement = std::array<char, 32>;  ///< an event as the server sends it

  // The signature and its type are the widget library's.
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
  [[nodiscard]] bool isAnnouncement(const xcb_generic_event_t& event) const;

  std::function<bool()> isInFront_;
  std::optional<Announcement> kept_;
  xcb_connection_t* connection_ = nullptr;  ///< the toolkit's
  int extensionEvent_ = 0;                  ///< of the server's keyboard extension
  int coreKeyboard_ = 0;                    ///< the only one whose map the toolkit reads
};

}  // namespace vorrin
