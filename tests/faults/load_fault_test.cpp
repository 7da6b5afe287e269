#include <memory>
#include <vector>

#include "fault_test.h"

namespace vorrin::faults {
namespace {

// The machine has other things to do.
struct LoadFault : FaultTest {
  std::vector<std::unique_ptr<Process>> load;

  void startLoad() {
    for (int count = 0; count < 6; ++count) {
      load.push_back(
          std::make_unique<Process>(std::vector<std::string>{"sh", "-c", "while :; do :; done"}));
    }
  }
};

TEST_F(LoadFault, on_a_busy_machine_no_key_is_lost_and_what_a_macro_presses_it_releases) {
  settings.intervals = {3600, 0.001};
  start();
  startLoad();
  user.tap(keys::tab);
  expectActions(mouseMacro);
  const std::string text = "the quick brown fox jumps over a lazy dog 0123456789";
  client->readAll(user);
  user.type(text);
  EXPECT_EQ(textOf(client->readAll(user)), text);
  user.tap(keys::escape);
  expectSilence();
  load.clear();
  expectUsableInput();
}

}  // namespace
}  // namespace vorrin::faults
