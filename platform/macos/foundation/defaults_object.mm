#include "platform/macos/foundation/defaults_object.h"

#include "platform/macos/foundation/ns_string.h"

namespace vorrin {

namespace {

id asPropertyList(bool value) {
  return @(value);
}
id asPropertyList(std::int64_t value) {
  return @(value);
}
id asPropertyList(double value) {
  return @(value);
}
id asPropertyList(const std::string& value) {
  return nsString(value);
}
id asPropertyList(const Data& value) {
  return [NSData dataWithBytes:value.bytes.data() length:value.bytes.size()];
}

DefaultsObject numberObject(NSNumber* number) {
  // A stored truth value is an object of a class of its own, which also answers as a number.
  CFTypeRef reference = (__bridge CFTypeRef)number;
  if (CFGetTypeID(reference) == CFBooleanGetTypeID()) return static_cast<bool>(number.boolValue);
  if (CFNumberIsFloatType((__bridge CFNumberRef)number)) return number.doubleValue;
  return static_cast<std::int64_t>(number.longLongValue);
}

}  // namespace

id propertyListObject(const DefaultsObject& object) {
  return std::visit([](const auto& value) { return asPropertyList(value); }, object);
}

std::optional<DefaultsObject> defaultsObject(id object) {
  if ([object isKindOfClass:NSNumber.class]) return numberObject(object);
  if ([object isKindOfClass:NSString.class]) return standardString(object);
  if ([object isKindOfClass:NSData.class]) {
    NSData* data = object;
    return Data{std::string(static_cast<const char*>(data.bytes), data.length)};
  }
  return std::nullopt;
}

}  // namespace vorrin
