#include <gmock/gmock.h>
#include <linux/input-event-codes.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <string>

#include "desktop_test.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::machine {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using x11_tests::waitUntil;

/// The input helper as `./run` places it from a checkout and takes it away again.
class Checkout : public WaylandDesktop {
 protected:
  // By names that need no quoting.
  static void SetUpTestSuite() {
    WaylandDesktop::SetUpTestSuite();
    EXPECT_TRUE(succeeds("ln -sfn '" CHECKOUT_PATH "' /run/checkout && ln -sfn '" BUILD_PATH
                         "' /run/build"));
  }
  // The other tests need it.
  static void TearDownTestSuite() {
    EXPECT_TRUE(succeeds("/run/checkout/scripts/input-helper install /run/build"));
    endDesktop();
  }

  static bool remove() { return succeeds("/run/checkout/scripts/input-helper remove"); }

  /// Answers the question of `./run` on a terminal; what stood there.
  static std::string answerOffer(const std::string& answer) {
    EXPECT_TRUE(
        succeeds("echo " + answer +
                 " | script -qec 'WAYLAND_DISPLAY=wayland-1 /run/checkout/scripts/input-helper "
                 "offer /run/build /run/declined' /run/said >/dev/null"));
    std::ifstream said("/run/said");
    return {std::istreambuf_iterator<char>(said), {}};
  }

  /// What the system has of it: files, unit, process, name on the bus, user. The test machine's own
  /// units are named for Vorrin, too.
  static std::string traces() {
    return outputOf(
        "{ find /etc /usr/local /usr/libexec /usr/lib/systemd /usr/lib/sysusers.d /var/lib "
        "/usr/share/dbus-1 /usr/share/polkit-1 /usr/share/libinput /run -path /run/vm -prune -o "
        "-iname '*vorrin*' -not -name '*vorrin-test.*' -not -name vorrin-input-helper.service.d "
        "-print; systemctl show -P LoadState vorrin-input-helper | grep -vx not-found; "
        "grep -sx vorrin-input-he /proc/[0-9]*/comm; busctl --system list | grep -i vorrin.input; "
        "getent passwd vorrin-input; getent group vorrin-input; } | paste -sd ' '");
  }
};

TEST_F(Checkout, places_the_helper_after_one_question_and_takes_everything_back) {
  startVorrin("0.05", "0.05", 7);
  ASSERT_TRUE(remove());
  EXPECT_EQ(traces(), "");
  EXPECT_TRUE(waitUntil([] { return status() == refusedStatus; })) << status();

  const auto said = answerOffer("y");
  EXPECT_THAT(said, HasSubstr("/usr/local/libexec/vorrin-input-helper"));
  EXPECT_THAT(said, HasSubstr("./run --uninstall takes all of them away again"));
  EXPECT_THAT(said, HasSubstr("from your next login on"));
  allow(player);
  ASSERT_TRUE(waitUntil([] { return status() == readyStatus; })) << status();
  startVorrin("0.05", "0.05", 7);
  toggle(KEY_TAB);
  readUntil("click up", 3);

  ASSERT_TRUE(remove());
  EXPECT_EQ(traces(), "");
  takeLines(1s);
  toggle(KEY_TAB);
  readUntil(keyLine(KEY_TAB, false));
}

}  // namespace
}  // namespace vorrin::machine
