#include "amounts.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vorrin::faults {

namespace {

std::map<std::string, std::int64_t, std::less<>>& given() {
  static std::map<std::string, std::int64_t, std::less<>> amounts;
  return amounts;
}

std::optional<std::int64_t> numberIn(std::string_view text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 1) return std::nullopt;
  return number;
}

std::optional<std::int64_t> fromEnvironment(std::string name) {
  std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::toupper(c); });
  const char* const value = std::getenv(("VORRIN_FAULT_" + name).c_str());
  return value == nullptr ? std::nullopt : numberIn(value);
}

}  // namespace

std::int64_t amount(const char* name, std::int64_t usual) {
  const auto option = given().find(name);
  const std::int64_t chosen =
      option != given().end() ? option->second : fromEnvironment(name).value_or(usual);
  std::cout << "--" << name << ' ' << chosen << '\n';
  return chosen;
}

bool readAmounts(int& argumentCount, char** arguments) {
  int kept = 1;
  for (int index = 1; index < argumentCount; ++index) {
    const std::string_view argument = arguments[index];
    if (!argument.starts_with("--") || argument.starts_with("--gtest")) {
      arguments[kept++] = arguments[index];
      continue;
    }
    const auto number =
        index + 1 < argumentCount ? numberIn(arguments[index + 1]) : std::optional<std::int64_t>();
    if (!number) return false;
    given()[std::string(argument.substr(2))] = *number;
    ++index;
  }
  argumentCount = kept;
  return true;
}

}  // namespace vorrin::faults
