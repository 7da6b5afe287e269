#include <gtest/gtest.h>

#include <memory>

#include "driver.h"
#include "platform/application.h"
#include "private_home.h"

namespace {

/// The one application object, made only when tests are run, not when they are listed.
class ApplicationEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    home_ = std::make_unique<vorrin::PrivateHome>();
    vorrin::driver::prepareEnvironment(home_->path);
    static int argumentCount = 1;
    static char name[] = "vorrin";
    static char* arguments[] = {name, nullptr};
    application_ = std::make_unique<vorrin::Application>(argumentCount, arguments);
    vorrin::driver::applicationWasMade();
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
