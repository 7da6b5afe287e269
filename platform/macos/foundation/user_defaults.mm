#include "platform/user_defaults.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "platform/macos/foundation/defaults_object.h"
#include "platform/macos/foundation/empty_domains.h"
#include "platform/macos/foundation/ns_string.h"

namespace vorrin {

struct UserDefaults::Native {
  NSUserDefaults* defaults = nil;
  /// The name that Core Foundation has for the same domain.
  NSString* applicationId = nil;
};

namespace {

CFStringRef asCoreFoundation(NSString* text) {
  return (__bridge CFStringRef)text;
}

// Waits until the preferences daemon has everything written so far.
void handOver(NSString* applicationId) {
  static bool told = false;
  if (CFPreferencesSynchronize(asCoreFoundation(applicationId), kCFPreferencesCurrentUser,
                               kCFPreferencesAnyHost) ||
      told) {
    return;
  }
  told = true;
  std::fprintf(stderr, "Vorrin could not store its settings in %s.\n", applicationId.UTF8String);
}

/// What stays of removed suites are empty files, some written only now.
void removeLeftovers() {
  NSURL* library = [NSFileManager.defaultManager URLsForDirectory:NSLibraryDirectory
                                                        inDomains:NSUserDomainMask]
                       .firstObject;
  if (library == nil) return;
  removeEmptyDomains(std::filesystem::path(standardString(library.path)) / "Preferences",
                     "vorrin-");
}

}  // namespace

UserDefaults::UserDefaults(std::shared_ptr<Native> native) : native_(std::move(native)) {}

UserDefaults UserDefaults::standard() {
  auto native = std::make_shared<Native>();
  native->defaults = NSUserDefaults.standardUserDefaults;
  native->applicationId = (__bridge NSString*)kCFPreferencesCurrentApplication;
  return UserDefaults(std::move(native));
}

std::optional<UserDefaults> UserDefaults::suite(const std::string& name) {
  NSString* applicationId = nsString(name);
  NSUserDefaults* defaults = [[NSUserDefaults alloc] initWithSuiteName:applicationId];
  if (defaults == nil) return std::nullopt;
  auto native = std::make_shared<Native>();
  native->defaults = defaults;
  native->applicationId = applicationId;
  return UserDefaults(std::move(native));
}

void UserDefaults::removePersistentDomain(const std::string& name) {
  NSString* applicationId = nsString(name);
  [NSUserDefaults.standardUserDefaults removePersistentDomainForName:applicationId];
  handOver(applicationId);
  removeLeftovers();
  // Once more as late as can be; what comes later still goes with the next removal.
  static const int registered = std::atexit(removeLeftovers);
  static_cast<void>(registered);
}

Reading<std::optional<DefaultsObject>> UserDefaults::object(const std::string& key) const {
  return {defaultsObject([native_->defaults objectForKey:nsString(key)]), {}};
}

StorageFailure UserDefaults::set(
    std::span<const std::pair<std::string, DefaultsObject>> values) const {
  NSMutableDictionary* objects = [NSMutableDictionary dictionary];
  for (const auto& [key, value] : values) objects[nsString(key)] = propertyListObject(value);
  // NSUserDefaults has no call for several values at once; this one writes to the same domain.
  CFPreferencesSetMultiple((__bridge CFDictionaryRef)objects, nullptr,
                           asCoreFoundation(native_->applicationId), kCFPreferencesCurrentUser,
                           kCFPreferencesAnyHost);
  handOver(native_->applicationId);
  return {};
}

std::optional<std::string> UserDefaults::takeNotice() const {
  // The preferences daemon keeps such files to itself.
  return {};
}

}  // namespace vorrin
