// Shows Vorrin at work on a private X server: a second program in front counts what it receives.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/session.h"
#include "tests/x11/harness/windows.h"

namespace {

using vorrin::bench::Stage;
using vorrin::x11_tests::Client;
using vorrin::x11_tests::ClientEvent;
using vorrin::x11_tests::Process;

constexpr std::uint16_t backtickKey = 50;
constexpr std::uint16_t secondsShown = 3;

/// Tells once a second what the client received since.
void countAloud(Client& client, const char* kind, const char* what) {
  std::int64_t begin = 0;
  std::size_t count = 0;
  int told = 0;
  client.readUntil([&](const ClientEvent& event) {
    if (event.kind != kind) return false;
    if (begin == 0) begin = event.arrival;
    ++count;
    if (event.arrival - begin < std::int64_t{1'000'000'000} * (told + 1)) return false;
    std::printf("  second %d: %zu %s received so far\n", ++told, count, what);
    std::fflush(stdout);
    return told == secondsShown;
  });
}

/// How many of the kind were made up to now. Clicks come one after the other, also from a window
/// manager that is busy, so one of another button comes behind all of them.
std::size_t countUpToNow(Stage& stage, Client& client, std::string_view kind) {
  constexpr unsigned mark = 3;
  stage.user.click(mark);
  const auto events = client.readUntil([](const ClientEvent& event) {
    return event.kind == "ButtonRelease" && event.detail == mark;
  });
  return static_cast<std::size_t>(std::ranges::count_if(events, [kind](const ClientEvent& event) {
    return event.kind == kind && event.detail != mark;
  }));
}

void stopWithEscape(Stage& stage, Client& client, const char* kind) {
  stage.user.tap(vorrin::bench::escapeKey);
  countUpToNow(stage, client, kind);
  // A second look: what is made after the first was made after Escape.
  const auto late = countUpToNow(stage, client, kind);
  std::printf("Escape: %zu more after it\n", late);
  if (late != 0) throw std::runtime_error("a macro went on after Escape");
}

void run(const Stage& stage, const std::vector<std::string>& command) {
  Process process(command, {{"DISPLAY", stage.desktop.display()}});
  const auto ending = process.waitForEnd();
  if (!ending || ending->bySignal || ending->number != 0) {
    throw std::runtime_error(command.front() + " failed");
  }
}

/// Moves both windows so that neither covers the other.
void putSideBySide(const Stage& stage, const Client& client) {
  const auto vorrin = vorrin::x11_tests::Windows(stage.desktop.display()).titled("Vorrin");
  if (!vorrin) throw std::runtime_error("Vorrin's window is gone");
  run(stage, {"xdotool", "windowmove", "--sync", std::to_string(*vorrin), "450", "45"});
  run(stage, {"xdotool", "windowmove", "--sync", std::to_string(client.window()), "25", "260"});
}

void takePicture(const Stage& stage, const std::filesystem::path& file) {
  run(stage, {"import", "-window", "root", "-crop", "1055x795+0+0", "+repage", file.string()});
  std::printf("Picture of the desktop: %s\n", file.c_str());
}

void demonstrate(const std::filesystem::path& pictureFile) {
  Stage stage;
  std::printf("Private X server %s with a window manager\n", stage.desktop.display().c_str());
  const auto vorrin =
      vorrin::bench::startConnectedVorrin(stage, vorrin::bench::clickingEvery(0.001));
  std::printf("Vorrin is connected: %s", vorrin->status().value_or("").c_str());
  Client client(stage.desktop.display(), "Counting what arrives here");
  putSideBySide(stage, client);
  stage.user.pointAt(client.window());
  vorrin::bench::waitForShortcut(stage, vorrin::bench::tabKey);
  std::puts("A second program is in front. Pressing Tab (click every 0.001 s):");
  stage.user.tap(vorrin::bench::tabKey);
  countAloud(client, "ButtonPress", "clicks");
  takePicture(stage, pictureFile);
  stopWithEscape(stage, client, "ButtonPress");
  std::puts("Pressing backtick (key 1 every 0.05 s):");
  stage.user.tap(backtickKey);
  countAloud(client, "KeyPress", "key presses");
  stopWithEscape(stage, client, "KeyPress");
}

}  // namespace

int main() {
  try {
    demonstrate(std::filesystem::current_path() / "vorrin-demo.png");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vorrin: the demonstration failed: %s\n", error.what());
    return 1;
  }
  return 0;
}
