#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/x11/harness/process.h"

namespace vorrin::faults {

/// A message bus at a place of its own, which can go and come back at the same place.
class MessageBus {
 public:
  /// `socket` is the file of the bus's socket.
  explicit MessageBus(const std::filesystem::path& socket);

  [[nodiscard]] std::string address() const { return "unix:path=" + socket_.string(); }

  /// Ends the bus as a crash would.
  void kill();

  /// Starts it and waits until it is at work.
  void start();

  /// Calls a method of the object at `path`; gives the answer as gdbus writes it, empty for an
  /// error or none in time.
  [[nodiscard]] std::string call(const std::string& service, const std::string& path,
                                 const std::string& method,
                                 const std::vector<std::string>& arguments = {}) const;

 private:
  std::filesystem::path socket_;
  std::unique_ptr<x11_tests::Process> process_;
};

}  // namespace vorrin::faults
