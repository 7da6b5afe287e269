#include "platform/text_field.h"

#import <objc/runtime.h>

#include <utility>

#include "platform/macos/foundation/ns_string.h"
#include "platform/macos/widgets/appearance.h"
#include "platform/macos/widgets/editable_field.h"
#include "platform/macos/widgets/label.h"
#include "platform/macos/widgets/view_native.h"

/// Passes the edits of a native field on to a `TextFieldDelegate`.
@interface VorrinTextFieldDelegate : NSObject <NSTextFieldDelegate>
@property(nonatomic, readonly) const void* object;
- (instancetype)initWithDelegate:(vorrin::TextFieldDelegate)delegate;
@end

@implementation VorrinTextFieldDelegate {
  vorrin::TextFieldDelegate _delegate;
}

- (instancetype)initWithDelegate:(vorrin::TextFieldDelegate)delegate {
  self = [super init];
  if (self != nil) _delegate = std::move(delegate);
  return self;
}

- (const void*)object {
  return _delegate.object;
}

- (void)controlTextDidChange:(NSNotification*)notification {
  const auto told = _delegate.controlTextDidChange;
  const auto field = vorrin::TextField::from(vorrin::viewOf(notification.object));
  if (told && field) told(*field);
}

@end

namespace vorrin {

namespace {

// Its address names the association; a field does not keep its delegate alive.
const char delegateKey = 0;

NSTextField* nsTextField(const TextField& field) {
  return nsViewAs<NSTextField>(field);
}

}  // namespace

TextField TextField::wrappingLabel(const std::string& text) {
  return TextField(nativeOf([VorrinLabel wrappingLabelWithString:nsString(text)]));
}

TextField TextField::field(const std::string& text) {
  NSTextField* field = [VorrinEditableField textFieldWithString:nsString(text)];
  // Leaves out the line breaks of what is pasted.
  field.usesSingleLineMode = YES;
  return TextField(nativeOf(field));
}

std::optional<TextField> TextField::from(const View& view) {
  if (!view || ![nsView(view) isKindOfClass:NSTextField.class]) return std::nullopt;
  return TextField(view.native());
}

std::string TextField::text() const {
  return standardString(nsTextField(*this).stringValue);
}

void TextField::setText(const std::string& text) const {
  NSTextField* field = nsTextField(*this);
  NSString* shown = nsString(text);
  if (![field.stringValue isEqualToString:shown]) field.stringValue = shown;
}

bool TextField::isEditable() const {
  return nsTextField(*this).editable;
}

void TextField::setTextColor(const Color& color) const {
  NSTextField* field = nsTextField(*this);
  NSColor* shown = nsColor(color);
  if ([field.textColor isEqual:shown]) return;
  field.textColor = shown;
  // While it is edited, a view that all fields of the window share shows its text.
  field.currentEditor.textColor = field.textColor;
}

Color TextField::textColor() const {
  return colorOf(nsTextField(*this).textColor);
}

void TextField::setMaximumNumberOfLines(int lines) const {
  NSTextField* field = nsTextField(*this);
  field.maximumNumberOfLines = lines;
  field.lineBreakMode = NSLineBreakByWordWrapping;
}

void TextField::setPlaceholder(const std::string& text) const {
  nsTextField(*this).placeholderString = nsString(text);
}

void TextField::setRoundedBezel(const Color& background) const {
  NSTextField* field = nsTextField(*this);
  field.bezeled = YES;
  field.bezelStyle = NSTextFieldRoundedBezel;
  field.drawsBackground = YES;
  field.backgroundColor = nsColor(background);
  field.focusRingType = NSFocusRingTypeDefault;
  NSString* placeholder = field.placeholderAttributedString.string;
  if (placeholder == nil) placeholder = field.placeholderString;
  if (placeholder == nil) return;
  // On a plane as dark as this the system's own colour for placeholders can hardly be read.
  field.placeholderAttributedString =
      [[NSAttributedString alloc] initWithString:placeholder
                                      attributes:@{
                                        NSFontAttributeName : field.font,
                                        NSForegroundColorAttributeName : nsColor({1, 1, 1, 0.5})
                                      }];
}

void TextField::setDelegate(TextFieldDelegate delegate) const {
  NSTextField* field = nsTextField(*this);
  auto* native = [[VorrinTextFieldDelegate alloc] initWithDelegate:std::move(delegate)];
  field.delegate = native;
  objc_setAssociatedObject(field, &delegateKey, native, OBJC_ASSOCIATION_RETAIN_NONATOMIC);
}

const void* TextField::delegate() const {
  VorrinTextFieldDelegate* native = objc_getAssociatedObject(nsView(*this), &delegateKey);
  return native.object;
}

}  // namespace vorrin
