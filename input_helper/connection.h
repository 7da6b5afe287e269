#pragma once

#include <functional>
#include <map>
#include <optional>

#include "input_helper/event_device.h"
#include "input_helper/event_loop.h"
#include "input_helper/filter.h"
#include "input_helper/macro_devices.h"
#include "input_helper/physical_keyboard.h"
#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin::input_helper {

/// Serves one main program at the other end of a packet socket: with the keyboards of the first
/// seat, and the devices that its macros act through. It has devices only while its session is at
/// work, so that nothing is read that is typed elsewhere.
class Connection {
 public:
  /// `ended` is called once `hasEnded`, from within.
  Connection(sd_event* loop, FileDescriptor socket, Uinput& uinput, std::function<void()> ended);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  /// Whether the session is in front, unlocked and awake. The main program is told nothing before
  /// this is first called.
  void setAtWork(bool isAtWork);

  /// Lets go of everything, then tells the main program why.
  void end(helper_protocol::EndReason reason);

  /// Nothing is held or waited for any more; the value is to go once nothing of it runs.
  [[nodiscard]] bool hasEnded() const { return hasEnded_; }

 private:
  struct Keyboard {
    PhysicalKeyboard keyboard;
    Awaited keys;
    Awaited lights;
  };

  [[nodiscard]] Awaited::Handler handler(std::function<void()> serve);
  [[nodiscard]] FilterActions filterActions();
  void letGo();
  void endBecause(const char* words);
  void send(const helper_protocol::FromHelper& message);

  void openDevices();
  void consider(const EventDevice& device);
  void follow(dev_t number);
  void closeDevices();
  void remove(KeyboardId id);

  void readKeyboard(KeyboardId id);
  void readPacket();
  void obey(const helper_protocol::ToHelper& message);

  sd_event* loop_;
  FileDescriptor socket_;
  Uinput& uinput_;
  std::function<void()> ended_;
  Filter filter_;
  std::map<KeyboardId, Keyboard> keyboards_;
  std::optional<MacroDevices> devices_;
  FileDescriptor notices_;
  std::optional<bool> isAtWork_;
  bool hasEnded_ = false;
  Awaited packets_;
  Awaited news_;
  Awaited deadline_;
};

}  // namespace vorrin::input_helper
