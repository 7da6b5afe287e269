#pragma once

#include <memory>

namespace vorrin {

/// What must not be slowed down. The system lets a program whose windows nobody sees nap: its
/// events and timers wait.
enum class Activity {
  listening,  ///< every key of the session waits for the main run loop
  repeating,  ///< a timer's moment counts, to the millisecond
};

/// Keeps the system from slowing the program down until the last copy of the value returned goes
/// away. The machine may still fall asleep when its user is away.
[[nodiscard]] std::shared_ptr<void> beginActivity(Activity activity);

}  // namespace vorrin
