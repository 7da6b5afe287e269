#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "platform/user_defaults.h"

namespace vorrin::test {

/// A case on a domain of its own, which is empty at first and removed at the end.
class StorageTest : public testing::Test {
 protected:
  StorageTest() = default;
  ~StorageTest() override { UserDefaults::removePersistentDomain(domain); }

  void put(const std::string& key, DefaultsObject value) const {
    const std::pair<std::string, DefaultsObject> entry{key, std::move(value)};
    EXPECT_FALSE(defaults.set({&entry, 1}));
  }

  /// A second view of the same domain, as another part of the program would have it.
  [[nodiscard]] UserDefaults reopened() const { return UserDefaults::suite(domain).value(); }

  const std::string domain = "vorrin-unit-" + std::to_string(getpid());
  const UserDefaults defaults = UserDefaults::suite(domain).value();
};

}  // namespace vorrin::test
