#include <gtest/gtest.h>

#include <QApplication>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "platform/application.h"
#include "private_home.h"

namespace {

/// The one application object, made only when tests are run, not when they are listed.
class ApplicationEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    home_ = std::make_unique<vorrin::PrivateHome>();
    const std::filesystem::path screen = home_->path / "screen.json";
    std::ofstream(screen) << R"({"screens": [{"name": "large", "x": 0, "y": 0, "width": 2880,
        "height": 1800, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";
    setenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + screen.string()).c_str(), 1);
    setenv("XDG_RUNTIME_DIR", home_->path.c_str(), 1);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    static int argumentCount = 1;
    static char name[] = "vorrin";
    static char* arguments[] = {name, nullptr};
    application_ = std::make_unique<vorrin::Application>(argumentCount, arguments);
    // A pop-up takes no choice for as long as a click may still be half of a double click.
    QApplication::setDoubleClickInterval(1);
  }

  void TearDown() override {
    application_.reset();
    home_.reset();
  }

 private:
  std::unique_ptr<vorrin::PrivateHome> home_;
  std::unique_ptr<vorrin::Application> application_;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  testing::InitGoogleTest(&argumentCount, arguments);
  testing::AddGlobalTestEnvironment(new ApplicationEnvironment);
  return RUN_ALL_TESTS();
}
