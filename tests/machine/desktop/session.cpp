#include "session.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "tests/x11/harness/wait.h"

namespace vorrin::machine {
namespace {

constexpr const char* runtime = "/run/user/4242";
constexpr const char* ipc = "/run/user/4242/sway.sock";
constexpr const char* display = "/run/user/4242/wayland-1";
constexpr const char* swayConfiguration = "/tmp/sway.conf";
constexpr const char* westonConfiguration = "/tmp/weston.ini";

std::vector<std::string> prepareSway() {
  std::ofstream(swayConfiguration)
      << "xwayland disable\n"
         // Emulated, it has no time to draw more often.
         "output HEADLESS-1 mode --custom 1280x800@20Hz\n"
         "focus_follows_mouse no\n"
         "default_border none\n"
         "for_window [app_id=\".*\"] floating enable\n"
         "for_window [app_id=\"logging-client\"] move position 740 40\n"
         "for_window [app_id=\"org.vorrin.Vorrin\"] move position 40 20\n";
  return {"sway", "-c", swayConfiguration};
}

/// Weston takes input only beside a real screen, as the kernel sees it.
std::vector<std::string> prepareWeston() {
  succeeds("modprobe -d \"$MACHINE_KERNEL\" bochs && udevadm settle");
  // Version 14 refuses `use-pixman` beside `renderer`, and 10 knows only the first.
  std::ofstream(westonConfiguration) << "[core]\nbackend=drm-backend.so\nuse-pixman=true\n"
                                        "idle-time=0\nrequire-input=false\n"
                                        "[shell]\npanel-position=none\nlocking=false\n"
                                        "close-animation=none\nstartup-animation=none\n";
  return {"weston", std::string("--config=") + westonConfiguration, "--socket=wayland-1",
          "--log=/tmp/weston.log"};
}

Environment environment() {
  return {{"HOME", "/home/player"},
          {"USER", "player"},
          {"XDG_RUNTIME_DIR", runtime},
          {"WAYLAND_DISPLAY", "wayland-1"},
          {"QT_QPA_PLATFORM", "wayland"},
          {"SWAYSOCK", ipc},
          {"WLR_BACKENDS", "headless,libinput"},
          {"WLR_RENDERER", "pixman"},
          {"LIBSEAT_BACKEND", "logind"}};
}

}  // namespace

DesktopSession::DesktopSession(Compositor compositor) : compositor_(compositor) {
  // One that was killed leaves them.
  for (const auto* socket : {display, ipc}) std::filesystem::remove(socket);
  std::vector<std::string> command = {"env", "-u", "WAYLAND_DISPLAY"};
  const bool isSway = compositor == Compositor::sway;
  for (const auto& word : isSway ? prepareSway() : prepareWeston()) command.push_back(word);
  process_ = start(command);
  if (!x11_tests::waitUntil(
          [&] {
            return std::filesystem::exists(display) && (!isSway || std::filesystem::exists(ipc));
          },
          std::chrono::seconds(60))) {
    throw std::runtime_error("the compositor does not start");
  }
}

std::unique_ptr<Process> DesktopSession::start(const std::vector<std::string>& command) const {
  return std::make_unique<Process>(login_.inside(command), environment());
}

std::string DesktopSession::outputOf(const std::vector<std::string>& command) const {
  const auto process = start(command);
  std::string text;
  while (const auto line = process->readLine()) text += *line + "\n";
  const auto ending = process->waitForEnd();
  if (!ending || ending->bySignal || ending->number != 0) {
    throw std::runtime_error(command.front() + " failed: " + text);
  }
  return text;
}

void DesktopSession::command(const std::string& text) const {
  outputOf({"swaymsg", text});
}

void DesktopSession::focus(const std::string& application) const {
  // A click gives the keyboard to the window below it, so the pointer goes first; in Vorrin's
  // window to where a click does nothing, for an open menu would keep the keyboard.
  application == loggingClient ? pointAt(900, 200) : pointAt(60, 725);
  switchTo(application);
}

void DesktopSession::switchTo(const std::string& application) const {
  command("[app_id=\"" + application + "\"] focus");
}

void DesktopSession::click() const {
  command("seat seat0 cursor press button1; seat seat0 cursor release button1");
}

void DesktopSession::arrangeVorrin(const std::string& what) const {
  command("[app_id=\"" + std::string(vorrinWindow) + "\"] " + what);
}

ShownWindow DesktopSession::vorrin() const {
  std::vector<nlohmann::json> found;
  const std::function<void(const nlohmann::json&)> search = [&](const nlohmann::json& node) {
    if (node.value("app_id", nlohmann::json()) == vorrinWindow) found.push_back(node);
    for (const char* kind : {"nodes", "floating_nodes"}) std::ranges::for_each(node[kind], search);
  };
  search(nlohmann::json::parse(tree()));
  if (found.size() != 1) throw std::runtime_error("Vorrin has not one window");
  const auto& window = found.front();
  const auto& rect = window["rect"];
  return {window["focused"], window["fullscreen_mode"] != 0, rect["x"], rect["y"], rect["width"],
          rect["height"]};
}

void DesktopSession::pointAt(int x, int y) const {
  command("seat seat0 cursor set " + std::to_string(x) + " " + std::to_string(y));
}

std::string DesktopSession::tree() const {
  return outputOf({"swaymsg", "-rt", "get_tree"});
}

bool DesktopSession::hasInput(const std::string& name) const {
  const auto opened = "/proc/" + std::to_string(process_->id()) + "/fd";
  return std::ranges::any_of(std::filesystem::directory_iterator(opened), [&](const auto& entry) {
    std::error_code failure;
    const auto device = std::filesystem::read_symlink(entry.path(), failure).filename();
    std::string found;
    std::getline(std::ifstream("/sys/class/input" / device / "device/name"), found);
    return found == name;
  });
}

void DesktopSession::kill() const {
  process_->signal(SIGKILL);
}

void DesktopSession::takeScreenshot() const {
  outputOf({"grim", screenshot});
}

Picture DesktopSession::picture() const {
  constexpr const char* file = "/home/player/picture.ppm";
  outputOf({"grim", "-t", "ppm", file});
  return Picture(file);
}

}  // namespace vorrin::machine
