#pragma once

#import <Foundation/Foundation.h>

#include <optional>

#include "platform/user_defaults.h"

namespace vorrin {

/// The value as a property-list object.
id propertyListObject(const DefaultsObject& object);

/// The property-list object as a value; nothing for nil and for kinds the program never stores.
std::optional<DefaultsObject> defaultsObject(id object);

}  // namespace vorrin
