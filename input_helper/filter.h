#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <span>

#include "input_helper/frame.h"
#include "input_helper/protocol/protocol.h"

namespace vorrin::input_helper {

/// The kernel stamps its events by the same clock.
using Moment = std::chrono::steady_clock::time_point;
using KeyboardId = int;

/// How taking a keyboard for oneself went.
enum class GrabOutcome { grabbed, busy, gone };
struct GrabResult {
  GrabOutcome outcome = GrabOutcome::gone;
  Moment at;  ///< just before it took effect: earlier events were seen by everybody
};

/// What the filter does to the world.
struct FilterActions {
  std::function<GrabResult(KeyboardId)> grab;
  /// Tells when everybody began to see the keyboard again.
  std::function<Moment(KeyboardId)> ungrab;
  std::function<void(KeyboardId, std::span<const InputEvent>)> emit;  ///< one frame, to the clone
  std::function<void(const helper_protocol::FromHelper&)> send;
  std::function<void()> panic;  ///< the chord was pressed
};

/// Decides what becomes of every event of the physical keyboards, without touching a device: events
/// and time come in as data. Keyboards are grabbed only while a shortcut can be swallowed, and only
/// while none of their keys is down; what arrives from a grabbed one goes on to its clone in the
/// order in which it was made, except for the shortcut presses that the main program claims. It is
/// asked about those that are pressed without a modifier; locks are none.
class Filter {
 public:
  /// How long the main program may take for a verdict before the key passes without one.
  static constexpr std::chrono::milliseconds answerLimit{250};
  /// What compositors get to open a new clone before its keyboard is taken from them.
  static constexpr std::chrono::milliseconds startGap{1000};
  /// The time between two attempts at a keyboard that another program holds.
  static constexpr std::chrono::milliseconds retryTime{1000};

  explicit Filter(FilterActions actions) : actions_(std::move(actions)) {}

  /// A keyboard was found, with its clone made just now and `keysDown` held on it.
  void addKeyboard(KeyboardId id, const KeySet& keysDown, Moment now);
  /// It is gone, its clone with it.
  void removeKeyboard(KeyboardId id, Moment now);

  /// A frame of keyboard `id` that the kernel stamped with `made`.
  void receive(KeyboardId id, Frame frame, Moment made, Moment now);

  void configure(const helper_protocol::Configure& configuration, Moment now);
  void answer(const helper_protocol::Verdict& verdict, Moment now);
  /// Forgets all keyboards, which were given back already, and that the tap was enabled.
  void removeAll();

  /// Does what is due by now: time limits, grabs that had to wait, retries.
  void advance(Moment now);
  /// When `advance` is due again at the latest.
  [[nodiscard]] std::optional<Moment> nextDeadline() const;

  /// Tells the main program whether the keyboards can be held. Due once the keyboards were added.
  void announce(Moment now);

 private:
  struct Keyboard {
    KeySet physical;   ///< down, as of the last event that arrived
    KeySet processed;  ///< down, as of the last event that was dealt with
    KeySet passed;     ///< down on the clone
    KeySet asked;      ///< down, and the main program was asked about it
    Moment ready;      ///< when the clone can be expected to be open everywhere
    bool grabbed = false;
    Moment grabbedAt;
    Moment ungrabbedAt;  ///< of the last time
  };
  struct PendingFrame {
    KeyboardId keyboard = 0;
    Frame events;
    bool filtered = false;  ///< only this program saw it
    std::size_t next = 0;   ///< the first event not dealt with
    Frame kept;
  };

  void process(Moment now);
  bool processFront(Moment now);
  bool processEvent(PendingFrame& frame, Keyboard& keyboard, const InputEvent& event, Moment now);
  bool processPress(PendingFrame& frame, Keyboard& keyboard, const InputEvent& event, Moment now);
  void processRelease(PendingFrame& frame, Keyboard& keyboard, const InputEvent& event);
  void ask(std::uint16_t key, Moment now);
  void tell(std::uint16_t key, bool down, bool repeated = false);
  void processRepeat(PendingFrame& frame, const Keyboard& keyboard, const InputEvent& event);
  void releaseAsked(Keyboard& keyboard);
  void giveUpQuestion(Moment now);
  void letGo(KeyboardId id, Keyboard& keyboard);
  void updateGrabs(Moment now);
  bool tryGrab(KeyboardId id, Keyboard& keyboard);
  void probe(Moment now);
  void setAvailable(bool available, Moment now);
  [[nodiscard]] bool wantsGrab() const;
  [[nodiscard]] bool modifierIsDown() const;

  FilterActions actions_;
  std::map<KeyboardId, Keyboard> keyboards_;
  std::deque<PendingFrame> queue_;
  helper_protocol::ShortcutSet swallowable_ = 0;
  bool enabled_ = false;
  bool available_ = true;
  Moment retryAt_;
  std::uint32_t nextQuestion_ = 1;
  std::optional<Moment> answerDue_;  ///< set while the front of the queue waits for its verdict
  std::optional<bool> verdict_;      ///< the verdict for the next press of the front frame
};

}  // namespace vorrin::input_helper
