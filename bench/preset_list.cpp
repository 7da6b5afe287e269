#include <X11/Xlib.h>
#include <poll.h>

#include <chrono>
#include <functional>
#include <stdexcept>

#include "bench/sections.h"
#include "bench/session.h"
#include "bench/statistics.h"
#include "bench/table.h"
#include "tests/x11/harness/display.h"

namespace vorrin::bench {

namespace {

constexpr int rounds = 20;
constexpr std::uint16_t returnKey = 36;
constexpr std::uint16_t f8Key = 100;
constexpr std::uint16_t f9Key = 101;
// From the start nothing has the keyboard; the list is the 14th control that Tab comes to.
constexpr int tabsToList = 14;

/// The menus and lists that open above the windows of a desktop.
class OpenedLists {
 public:
  explicit OpenedLists(const std::string& display) : display_(x11_tests::openDisplay(display)) {
    XSelectInput(display_.get(), DefaultRootWindow(display_.get()), SubstructureNotifyMask);
    XSync(display_.get(), False);
  }

  void waitUntilOpened() {
    waitFor([this](const XEvent& event) {
      if (event.type != MapNotify || event.xmap.override_redirect == False) return false;
      list_ = event.xmap.window;
      return true;
    });
  }

  void waitUntilClosed() {
    waitFor([this](const XEvent& event) {
      return event.type == UnmapNotify && event.xunmap.window == list_;
    });
  }

 private:
  void waitFor(const std::function<bool(const XEvent&)>& isWanted) {
    while (true) {
      while (XPending(display_.get()) > 0) {
        XEvent event;
        XNextEvent(display_.get(), &event);
        if (isWanted(event)) return;
      }
      constexpr int patience = 10'000;
      pollfd news{ConnectionNumber(display_.get()), POLLIN, 0};
      if (poll(&news, 1, patience) == 0) throw std::runtime_error("no list opened or closed");
    }
  }

  x11_tests::DisplayPointer display_;
  Window list_ = None;
};

double milliseconds(const std::function<void()>& operation) {
  const auto begin = std::chrono::steady_clock::now();
  operation();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
      .count();
}

struct Times {
  double open = 0;
  double choose = 0;
};

/// Medians with so many presets.
Times measureWith(Stage& stage, int presets) {
  storePresets(presets);
  // Keys of a shortcut are tried now and then; typed as fast as here, the next could overtake them.
  Preset settings = clickingEvery(0.5);
  settings.keys = {f8Key, f9Key};
  const auto vorrin = startConnectedVorrin(stage, settings);
  for (int i = 0; i < tabsToList; ++i) stage.user.tap(tabKey);
  OpenedLists lists(stage.desktop.display());
  std::vector<double> open;
  std::vector<double> choose;
  for (int round = 0; round < rounds; ++round) {
    open.push_back(milliseconds([&] {
      stage.user.tap(returnKey);
      lists.waitUntilOpened();
    }));
    // Another name each time, so that the list has to move there.
    choose.push_back(milliseconds([&] {
      stage.user.type("preset " + std::to_string(round % 10));
      stage.user.tap(returnKey);
      lists.waitUntilClosed();
    }));
  }
  return {median(open), median(choose)};
}

}  // namespace

void measurePresetList() {
  Stage stage;
  const Times few = measureWith(stage, 10);
  const Times many = measureWith(stage, 1000);
  printTable(
      "The list of presets: from the key that opens it to the list, and from typing a name "
      "and Enter to its end, in ms (medians of 20)",
      {{"presets", "open", "of 10 presets'", "type and choose", "of 10 presets'"},
       {"10 (reference)", fixed(few.open, 1), "1.00", fixed(few.choose, 1), "1.00"},
       {"1,000", fixed(many.open, 1), fixed(many.open / few.open, 2), fixed(many.choose, 1),
        fixed(many.choose / few.choose, 2)}});
}

}  // namespace vorrin::bench
