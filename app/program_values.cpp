#include "app/program_values.h"

#include <algorithm>
#include <string_view>

#include "bridge/event_synthesis.h"
#include "bridge/program_engine.h"
#include "settings/choices.h"
#include "ui/theme.h"

namespace vorrin {

const Color hackerGreen = Color::sRgb(0.25, 0.9, 0.48);

const Color dimGreen = Color::sRgb(0.35, 0.58, 0.42);

bool dryRun = false;

const std::int64_t marker = 0x5652524E;

const std::array<ShortcutChoice, 6> choices{{
    {"Backtick `", 50},
    {"Tab", 48},
    {"F6", 97},
    {"F7", 98},
    {"F8", 100},
    {"F9", 101},
}};

const std::array<std::uint16_t, 10> digits{29, 18, 19, 20, 21, 23, 22, 26, 28, 25};

Engine engine;

void readArguments(int argumentCount, const char* const* arguments) {
  dryRun = std::any_of(arguments, arguments + argumentCount,
                       [](std::string_view argument) { return argument == "--self-test"; });
}

}  // namespace vorrin
