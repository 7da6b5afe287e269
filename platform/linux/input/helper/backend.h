#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "input_helper/protocol/packet_socket.h"
#include "platform/event_post.h"
#include "platform/event_tap.h"
#include "platform/linux/input/helper/helper_service.h"
#include "platform/linux/input/helper/tap.h"

namespace vorrin::helper {

/// Keyboard listening and input synthesis through `vorrin-input-helper`, the one program that may
/// read the keyboards. Being trusted is being connected to it. All calls on the main thread; none
/// waits.
class Backend {
 public:
  explicit Backend(CallHelper call = callHelper);
  Backend(const Backend&) = delete;
  Backend& operator=(const Backend&) = delete;
  ~Backend();

  /// Whether the helper serves this program.
  [[nodiscard]] bool isTrusted() const { return listening_.has_value(); }
  /// The same, but without it the helper is asked to, and may ask the user. From then on it is
  /// asked again by itself, once a second, as long as that takes no question to the user.
  bool isTrustedWithPrompt();

  /// How long the permission lasts. Allowing is asked about, and connects when it is granted; what
  /// is taken back is left at once, until the user asks again.
  void allowForGood();
  void askEveryTime();
  void takeBack();

  /// One tap at a time; nothing when the keyboards cannot be held.
  std::shared_ptr<Tap> createTap(std::uint64_t mask, EventTap::Callback callback,
                                 std::function<void()> invalidated);

  /// What the helper is too far behind to take is left out.
  void post(std::span<const SyntheticEvent> events) const;

 private:
  void lookAgain();
  void reach();
  void take(Reply reply);
  void read();
  void receive(const helper_protocol::FromHelper& message);
  void listen(helper_protocol::Listening listening);
  void tell(const helper_protocol::KeyMoved& moved);
  void followEnd(helper_protocol::EndReason reason);
  void configure(const helper_protocol::Configure& configuration);
  [[nodiscard]] bool send(const helper_protocol::ToHelper& message) const;
  void lose();

  CallHelper call_;
  QObject context_;  ///< closures on it end with the backend
  FileDescriptor socket_;
  std::unique_ptr<QSocketNotifier, void (*)(QSocketNotifier*)> notifier_;
  std::weak_ptr<Tap> tap_;
  std::optional<helper_protocol::Listening> listening_;  ///< set once the helper serves us
  bool isReaching_ = false;
  bool mayAsk_ = false;
  bool isWanted_ = false;  ///< else only the user's own wish connects (again)
  std::string refusal_;    ///< the last one, said once
  int secondsAway_ = 0;    ///< that the user was seen here and the session is said to be away
  QTimer everySecond_;
};

}  // namespace vorrin::helper
