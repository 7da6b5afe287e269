#include "event_watch.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <thread>

namespace vorrin::machine {
namespace {

template <class Request>
std::string text(int file, Request request) {
  std::array<char, 128> buffer{};
  ::ioctl(file, request(buffer.size() - 1), buffer.data());
  return buffer.data();
}

}  // namespace

bool EventWatch::read(const Device& device) {
  std::array<input_event, 64> events;
  for (;;) {
    const auto size = ::read(device.file.get(), events.data(), sizeof events);
    if (size < 0) return errno == EAGAIN;
    if (size == 0) return false;
    for (std::size_t i = 0; i < static_cast<std::size_t>(size) / sizeof(input_event); ++i) {
      seen_.push_back({device.name, device.place, events[i].type, events[i].code, events[i].value});
    }
  }
}

void EventWatch::look() {
  // Going through the folder costs more than all the reading.
  if (const auto now = std::chrono::steady_clock::now(); now >= nextOpening_) {
    nextOpening_ = now + std::chrono::milliseconds(50);
    openNew();
  }
  std::erase_if(devices_, [this](const auto& entry) { return !read(entry.second); });
}

void EventWatch::openNew() {
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator("/dev/input", failure)) {
    const auto path = entry.path().string();
    if (!entry.path().filename().string().starts_with("event") || devices_.contains(path)) continue;
    FileDescriptor file(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen()) continue;
    auto name = text(file.get(), [](auto size) { return EVIOCGNAME(size); });
    auto place = text(file.get(), [](auto size) { return EVIOCGPHYS(size); });
    devices_.emplace(path, Device{std::move(file), std::move(name), std::move(place)});
  }
}

std::vector<std::string> EventWatch::keys() const {
  std::vector<std::string> keys;
  for (const auto& event : seen_) {
    if (event.type == EV_KEY) {
      keys.push_back(std::to_string(event.code) + " " + std::to_string(event.value));
    }
  }
  return keys;
}

int EventWatch::device(const std::string& place, const std::string& name) const {
  const auto found = std::ranges::find_if(devices_, [&](const auto& entry) {
    return entry.second.place == place && (name.empty() || entry.second.name == name);
  });
  return found == devices_.end() ? -1 : found->second.file.get();
}

bool EventWatch::isFree(const std::string& place, const std::string& name) {
  std::this_thread::sleep_until(nextAsking_);
  nextAsking_ = std::chrono::steady_clock::now() + std::chrono::milliseconds(50);
  const int file = device(place, name);
  if (file < 0 || ::ioctl(file, EVIOCGRAB, 1) != 0) return false;
  ::ioctl(file, EVIOCGRAB, 0);
  return true;
}

bool EventWatch::has(const std::string& place, const std::string& name) const {
  return device(place, name) >= 0;
}

std::vector<int> EventWatch::held() const {
  std::vector<int> keys;
  for (const auto& [path, device] : devices_) {
    std::array<unsigned char, KEY_CNT / 8> bits{};
    if (::ioctl(device.file.get(), EVIOCGKEY(sizeof bits), bits.data()) < 0) continue;
    for (int key = 0; key < KEY_CNT; ++key) {
      if (((bits[static_cast<std::size_t>(key / 8)] >> (key % 8)) & 1) != 0) keys.push_back(key);
    }
  }
  return keys;
}

}  // namespace vorrin::machine
