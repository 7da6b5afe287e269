// machine_settings INTERVAL0 INTERVAL1 DIGIT: stores Vorrin's settings for the user it runs as,
// with Backtick and Tab as shortcuts.

#include <cstdlib>

#include "app/program_values.h"
#include "settings/preset.h"
#include "settings/settings_persistence.h"

int main(int count, char** arguments) {
  if (count != 4) return 2;
  vorrin::readArguments(count, arguments);
  const vorrin::Preset settings{.intervals = {std::atof(arguments[1]), std::atof(arguments[2])},
                                .keys = {50, 48},
                                .digit = std::atol(arguments[3]),
                                .enabled = {true, true}};
  if (!settings.valid()) return 2;
  vorrin::storeCurrentSettings(vorrin::UserDefaults::standard(), settings);
  return 0;
}
