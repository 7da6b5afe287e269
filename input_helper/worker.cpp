#include "input_helper/worker.h"

#include <poll.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#include "input_helper/device_watch.h"
#include "input_helper/filter.h"
#include "input_helper/log.h"
#include "input_helper/macro_devices.h"
#include "input_helper/physical_keyboard.h"
#include "input_helper/protocol/packet_socket.h"
#include "input_helper/session_watch.h"

namespace vorrin::input_helper {
namespace {

using namespace helper_protocol;

class Worker {
 public:
  Worker(FileDescriptor connection, Opener opener, const Peer& peer, bool permissionNeeded)
      : connection_(std::move(connection)),
        opener_(std::move(opener)),
        peer_(peer),
        permissionNeeded_(permissionNeeded),
        filter_(filterActions()),
        watch_([this](unsigned index) { consider(index); }) {}

  int run() {
    while (!exitStatus_) {
      opener_.beat();
      serve(wait());
    }
    // The kernel takes its time over each device that goes; nobody has to wait for that.
    for (const auto& [id, keyboard] : keyboards_) std::ignore = keyboard.ungrab();
    while (!keyboards_.empty()) {
      keyboards_.erase(keyboards_.begin());
      opener_.beat();
    }
    return *exitStatus_;
  }

 private:
  static Moment now() { return std::chrono::steady_clock::now(); }

  /// The first reason to end counts.
  void end(int status, std::string_view reason) {
    if (exitStatus_) return;
    exitStatus_ = status;
    log(reason);
  }

  void endTelling(EndReason reason, std::string_view words) {
    send(Ending{reason});
    end(0, words);
  }

  void send(const FromHelper& message) {
    if (sendPacket(connection_.number(), encode(message))) return;
    end(0, "the main program is gone or reads nothing; the keyboards are free");
  }

  FilterActions filterActions() {
    return {
        .grab = [this](KeyboardId id) { return keyboards_.at(id).grab(); },
        .ungrab = [this](KeyboardId id) { return keyboards_.at(id).ungrab(); },
        .emit = [this](KeyboardId id,
                       std::span<const InputEvent> frame) { keyboards_.at(id).emit(frame); },
        .send = [this](const FromHelper& message) { send(message); },
        .panic =
            [this] {
              endTelling(EndReason::panicChord, "ended by Escape, Backspace and Enter together");
            },
    };
  }

  void open() {
    devices_ = MacroDevices::create([this] { return opener_.openUinput(); });
    if (!devices_) {
      endTelling(EndReason::noUinput, "the system makes no input devices for it (/dev/uinput)");
      return;
    }
    session_.emplace(
        peer_, permissionNeeded_,
        SessionWatch::Changes{
            .activity = [this](bool active) { followSession(active); },
            .revoked = [this] { endTelling(EndReason::revoked, "its permission was taken back"); },
            .deaf =
                [this] {
                  // A right that could not be taken back any more is not to be used.
                  if (permissionNeeded_)
                    end(1, "the system bus is gone, and the permission with it");
                },
        });
    watch_.tellPresent();
    log("it passes " + std::to_string(keyboards_.size()) + " keyboards on");
    filter_.announce(now());
    followSession(session_->isActive());
  }

  void consider(unsigned index) {
    const auto id = static_cast<KeyboardId>(index);
    if (!devices_ || keyboards_.contains(id)) return;
    // A machine with many devices takes a while over them.
    opener_.beat();
    auto device = opener_.openEventDevice(index);
    if (!device.isOpen()) return;
    auto keyboard =
        PhysicalKeyboard::adopt(std::move(device), [this] { return opener_.openUinput(); });
    if (!keyboard) return;
    filter_.addKeyboard(id, keyboard->keysDown(), now());
    keyboards_.emplace(id, std::move(*keyboard));
  }

  void followSession(bool active) {
    if (!active && devices_) devices_->release();
    filter_.setSessionActive(active, now());
  }

  /// What `wait` found, in the order in which it asked.
  struct Ready {
    std::vector<pollfd> waited;
    std::vector<KeyboardId> keyboards;  ///< two entries of `waited` each, after the fixed ones
  };
  enum Fixed : std::size_t { connectionPlace, openerPlace, watchPlace, busPlace, fixedPlaces };

  Ready wait() {
    Ready ready;
    ready.waited = {
        {connection_.number(), POLLIN, 0},
        {opener_.number(), POLLIN, 0},
        {watch_.number(), POLLIN, 0},
        {session_ ? session_->number() : -1, session_ ? session_->awaitedEvents() : short{0}, 0}};
    for (const auto& [id, keyboard] : keyboards_) {
      ready.keyboards.push_back(id);
      ready.waited.push_back({keyboard.deviceNumber(), POLLIN, 0});
      ready.waited.push_back({keyboard.cloneNumber(), POLLIN, 0});
    }
    auto due = now() + std::chrono::milliseconds(heartbeatMilliseconds);
    if (const auto deadline = filter_.nextDeadline()) due = std::min(due, *deadline);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(due - now()).count();
    ::poll(ready.waited.data(), ready.waited.size(),
           static_cast<int>(std::max(left, decltype(left){0})));
    return ready;
  }

  void serve(const Ready& ready) {
    for (std::size_t i = 0; i < ready.keyboards.size(); ++i) {
      const auto place = fixedPlaces + 2 * i;
      if (ready.waited[place].revents != 0) readKeyboard(ready.keyboards[i]);
      if (ready.waited[place + 1].revents != 0 && keyboards_.contains(ready.keyboards[i])) {
        keyboards_.at(ready.keyboards[i]).copyLights();
      }
    }
    if (ready.waited[openerPlace].revents != 0) end(1, "its privileged part is gone");
    if (ready.waited[connectionPlace].revents != 0) readConnection();
    if (ready.waited[watchPlace].revents != 0) watch_.dispatch();
    // The bus has time limits of its own, so it is served at every turn.
    if (session_) session_->dispatch();
    if (!exitStatus_) filter_.advance(now());
  }

  void readKeyboard(KeyboardId id) {
    const bool present = keyboards_.at(id).read({
        .frame = [this, id](Frame frame,
                            Moment made) { filter_.receive(id, std::move(frame), made, now()); },
        .resynchronised = [this,
                           id](const KeySet& keys) { filter_.resynchronise(id, keys, now()); },
    });
    if (present) return;
    filter_.removeKeyboard(id, now());
    keyboards_.erase(id);
  }

  void readConnection() {
    Packet packet;
    pid_t sender = 0;
    while (!exitStatus_) {
      const auto received = receivePacket(connection_.number(), packet, &sender);
      if (received == Received::nothing) return;
      if (received == Received::end) {
        end(0, "the main program is gone; the keyboards are free");
        return;
      }
      if (sender != peer_.process) {
        end(3, "another program than the one that started it speaks; the keyboards are free");
        return;
      }
      const auto message = decodeToHelper(packet.view());
      if (!message || !obey(*message)) {
        end(3, "the main program said something that has no meaning; the keyboards are free");
      }
    }
  }

  /// False for a message that has no place here.
  bool obey(const ToHelper& message) {
    if (const auto* hello = std::get_if<Hello>(&message)) return greet(*hello);
    if (!devices_ || !session_) return false;
    if (const auto* configuration = std::get_if<Configure>(&message)) {
      filter_.configure(*configuration, now());
    } else if (const auto* verdict = std::get_if<Verdict>(&message)) {
      return filter_.answer(*verdict, now());
    } else if (const auto* post = std::get_if<Post>(&message)) {
      if (session_->isActive()) devices_->post(*post);
    } else {
      session_->assumeUnlocked();
    }
    return true;
  }

  bool greet(const Hello& hello) {
    if (devices_) return false;
    send(Hello{});
    if (hello.version != helper_protocol::version) {
      end(4, "the main program is of another version");
      return true;
    }
    open();
    return true;
  }

  FileDescriptor connection_;
  Opener opener_;
  Peer peer_;
  bool permissionNeeded_;
  std::map<KeyboardId, PhysicalKeyboard> keyboards_;
  std::optional<MacroDevices> devices_;
  std::optional<SessionWatch> session_;
  Filter filter_;
  DeviceWatch watch_;
  std::optional<int> exitStatus_;
};

}  // namespace

int serveMainProgram(FileDescriptor connection, Opener opener, const Peer& peer,
                     bool permissionNeeded) {
  if (!nameSenders(connection.number())) return 1;
  return Worker(std::move(connection), std::move(opener), peer, permissionNeeded).run();
}

}  // namespace vorrin::input_helper
