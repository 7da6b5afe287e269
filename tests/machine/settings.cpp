// machine_settings INTERVAL0 INTERVAL1 DIGIT: stores Vorrin's settings for the user it runs as,
// with Backtick and Tab as shortcuts. Without arguments it prints the digit stored.

#include <cstdio>
#include <cstdlib>

#include "app/program_values.h"
#include "settings/preset.h"
#include "settings/settings_persistence.h"

int main(int count, char** arguments) {
  vorrin::readArguments(count, arguments);
  const auto defaults = vorrin::UserDefaults::standard();
  if (count == 1) {
    std::printf("%ld\n", vorrin::loadCurrentSettings(defaults).value.digit);
    return 0;
  }
  if (count != 4) return 2;
  const vorrin::Preset settings{.intervals = {std::atof(arguments[1]), std::atof(arguments[2])},
                                .keys = {50, 48},
                                .digit = std::atol(arguments[3]),
                                .enabled = {true, true}};
  if (!settings.valid()) return 2;
  return vorrin::storeCurrentSettings(defaults, settings) ? 1 : 0;
}
