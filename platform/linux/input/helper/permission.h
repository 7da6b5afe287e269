#pragma once

#include <QObject>
#include <functional>

namespace vorrin::helper {

/// The action that polkit decides on when the helper is started.
inline constexpr const char* permissionAction = "org.vorrin.input-helper";

/// Asks polkit, without a question to the user, whether this process may start the helper now.
/// `answered` gets the answer on the main thread unless `receiver` goes first; without polkit the
/// answer is no.
void askPermission(QObject& receiver, std::function<void(bool allowed)> answered);

}  // namespace vorrin::helper
