#pragma once

#include <gmock/gmock.h>

#include <vector>

#include "driver.h"
#include "platform/alert.h"

namespace vorrin {

/// A window that is asked something.
class AlertSheet : public testing::Test {
 protected:
  AlertSheet() : window(Window::make({580, 400}, window_style::titled)) {
    window.orderFront();
    driver::activate(window);
  }
  ~AlertSheet() override {
    driver::takeAway(window);
    driver::deleteWhatIsLeft();
  }

  void ask(const Alert& alert) {
    beginSheet(alert, window, [this](int answer) { answers.push_back(answer); });
  }

  /// Presses a key and waits for the answer that it gives.
  void answerWith(driver::Key key) {
    const std::size_t before = answers.size();
    driver::pressInSheet(window, key);
    EXPECT_TRUE(driver::waitFor([this, before] { return answers.size() > before; }));
  }

  static Alert question() {
    return {.messageText = "Sure?",
            .informativeText = "It cannot be undone.",
            .buttons = {"Yes", "Cancel"}};
  }

  Window window;
  std::vector<int> answers;
};

}  // namespace vorrin
