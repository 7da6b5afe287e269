#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "platform/event_post.h"
#include "platform/event_tap.h"
#include "platform/linux/input/helper/connection.h"
#include "platform/linux/input/helper/launcher.h"
#include "platform/linux/input/helper/tap.h"

namespace vorrin::helper {

/// Keyboard listening and input synthesis through `vorrin-input-helper`, the one program that may
/// read the keyboards. Being trusted is being connected to it; asking for the permission is
/// starting it. All calls on the main thread.
class Backend {
 public:
  explicit Backend(HelperStart start = {});
  Backend(const Backend&) = delete;
  Backend& operator=(const Backend&) = delete;
  ~Backend();

  /// Whether a helper serves this program.
  [[nodiscard]] bool isTrusted() const { return available_.has_value(); }
  /// The same, but without one a helper is started, for which polkit may ask the user. From then on
  /// it is started again by itself, once a second, as long as that takes no question to the user.
  bool isTrustedWithPrompt();

  /// Lets go of the helper, until the user is asked again.
  void giveUpPermission();
  /// Has polkit change how long the permission lasts: "ask", "allow" or "deny". The user is asked
  /// for leave; after an "allow" the helper starts. Does nothing where that is not installed.
  void changePermission(const std::string& term);

  /// One tap at a time; nothing when the keyboards cannot be held.
  std::shared_ptr<Tap> createTap(std::uint64_t mask, EventTap::Callback callback,
                                 std::function<void()> invalidated);

  /// Clicks happen at the pointer wherever it is, so the numbers stay 0.
  std::optional<PointerLocation> pointerLocation();

  /// What the helper is too far behind to take is left out.
  void post(std::span<const SyntheticEvent> events);

 private:
  void startSilently();
  void configure(const helper_protocol::Configure& configuration);
  void start(StartWay way);
  void receive(const helper_protocol::FromHelper& message);
  void greet(const helper_protocol::Hello& hello);
  void setAvailable(bool available);
  void followEnd(const helper_protocol::Ending& ending);
  void answer(const helper_protocol::Question& question);
  void tellUnlocked();
  void lose(bool broken);
  void countFailedStart();
  void followProcessEnd(int status);

  HelperStart start_;
  QObject context_;  ///< closures on it end with the backend
  std::unique_ptr<Connection> connection_;
  std::shared_ptr<void> process_;  ///< the helper's, while its end is to be told
  std::unique_ptr<StartedProcess> permissionChange_;
  std::weak_ptr<Tap> tap_;
  bool greeted_ = false;               ///< it said hello
  std::optional<bool> available_;      ///< whether it holds the keyboards; set once it serves us
  bool asking_ = false;                ///< polkit was asked for the standing permission
  int failedStarts_ = 0;               ///< helpers in a row that ended before they served
  StartWay way_ = StartWay::directly;  ///< of the last start
  bool waitForUser_ = true;            ///< only the user's own wish starts it (again)
  QTimer retry_;
};

}  // namespace vorrin::helper
