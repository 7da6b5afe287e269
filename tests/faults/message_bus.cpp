#include "message_bus.h"

#include <stdexcept>

namespace vorrin::faults {

using x11_tests::Process;

MessageBus::MessageBus(const std::filesystem::path& socket) : socket_(socket) {
  start();
}

void MessageBus::kill() {
  process_.reset();
  // Its end leaves the socket behind, at which the next one could not listen.
  std::filesystem::remove(socket_);
}

void MessageBus::start() {
  process_ = std::make_unique<Process>(
      std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                               "--print-address", "--address=" + address()});
  if (!process_->readLine()) throw std::runtime_error("no message bus");
}

std::string MessageBus::call(const std::string& service, const std::string& path,
                             const std::string& method,
                             const std::vector<std::string>& arguments) const {
  std::vector<std::string> command{"gdbus",    "call",      "--address", address(),       "--dest",
                                   service,    "--timeout", "5",         "--object-path", path,
                                   "--method", method,      "--"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  Process process(command);
  return process.readLine().value_or("");
}

}  // namespace vorrin::faults
