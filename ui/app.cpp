#include "ui/app.h"

#include <algorithm>

#include "platform/fatal_error.h"
#include "platform/uuid.h"

namespace vorrin {

App::App(const std::vector<std::string>& arguments, std::function<void(App&)> interfaceCheck)
    : testSuite("vorrin-ui-" + newUuidString()),
      interfaceTest_(std::find(arguments.begin(), arguments.end(), "--ui-test") != arguments.end()),
      interfaceCheck_(std::move(interfaceCheck)) {}

const UserDefaults& App::defaults() {
  if (!defaults_) {
    defaults_ = interfaceTest_ ? UserDefaults::suite(testSuite) : UserDefaults::standard();
    if (!defaults_) fatalError("the settings domain of the interface check cannot be made");
  }
  return *defaults_;
}

const PresetStore& App::presetStore() {
  if (!presetStore_) presetStore_.emplace(defaults());
  return *presetStore_;
}

}  // namespace vorrin
