#pragma once

#include <gmock/gmock.h>

#include <QGuiApplication>
#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fake_helper.h"
#include "platform/linux/input/helper/backend.h"

namespace vorrin::helper {

inline constexpr std::uint16_t tabKey = 48;  // macOS's numbers
inline constexpr std::uint16_t backtickKey = 50;
inline constexpr std::uint16_t oneKey = 18;
inline constexpr std::uint16_t escapeKey = 53;
inline constexpr std::uint16_t evdevTab = 15;  // the kernel's
inline constexpr std::uint16_t evdevOne = 2;
inline constexpr std::uint16_t evdevEscape = 1;
inline constexpr std::uint64_t keyEvents = 0xC00;
inline constexpr std::array claimed{tabKey};

/// What the tap's callback saw, and what it answers.
inline std::vector<TapEvent> seen;
inline TapVerdict verdict = TapVerdict::pass;

inline TapVerdict remember(const TapEvent& event) {
  seen.push_back(event);
  return verdict;
}

inline bool until(const std::function<bool()>& holds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!holds()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  return true;
}

/// Does at its end what an event loop would have done at its next turn.
struct LastTurn {
  ~LastTurn() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
};

class BackendTest : public testing::Test {
 protected:
  BackendTest() {
    seen.clear();
    verdict = TapVerdict::pass;
  }

  /// Asks as the user does and has the helper serve.
  void connect() {
    backend.isTrustedWithPrompt();
    helper.serve();
    ASSERT_TRUE(until([this] { return backend.isTrusted(); }));
    helper.heard();
  }

  void makeTap() {
    connect();
    tap = backend.createTap(keyEvents, remember, [this] {
      invalidated = true;
      tap.reset();
    });
    ASSERT_TRUE(tap);
    tap->addToMainRunLoop();
    tap->setEnabled(true);
    ASSERT_TRUE(tap->claim(claimed));
    helper.heard();
  }

  /// What the helper is told next.
  helper_protocol::ToHelper nextHeard() {
    std::vector<helper_protocol::ToHelper> heard;
    EXPECT_TRUE(until([&] { return !(heard = helper.heard()).empty(); }));
    return heard.empty() ? helper_protocol::ToHelper() : heard.back();
  }

  /// Whether the helper is left, with this word in the log, and not started again by itself.
  void expectLeft(const std::string& word) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(until([this] { return helper.isLeft(); }));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr(word));
    EXPECT_FALSE(backend.isTrusted());
    EXPECT_THAT(helper.calls(), testing::ElementsAre("ask"));
  }

  int argumentCount = 0;
  QGuiApplication application{argumentCount, nullptr};
  LastTurn lastTurn;  // after all that is declared below it
  FakeHelper helper;
  Backend backend{helper.service()};
  std::shared_ptr<Tap> tap;
  bool invalidated = false;
};

}  // namespace vorrin::helper
