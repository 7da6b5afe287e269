#pragma once

#include <span>
#include <string>

#include "platform/button.h"

namespace vorrin {

/// A button that shows one item of a list and lets the user pick another.
class PopUpButton : public Button {
 public:
  PopUpButton() = default;

  /// An empty one. `action` is performed when the user picks an item, not by `selectItem`.
  static PopUpButton make(Action action);

  void removeAllItems() const;
  /// Adds items at the end; the first item ever added becomes selected. Equal titles are allowed.
  void addItems(std::span<const std::string> titles) const;

  /// Index of the selected item, -1 when there are no items.
  [[nodiscard]] int indexOfSelectedItem() const;
  /// Title of the selected item, empty when there are no items.
  [[nodiscard]] std::string titleOfSelectedItem() const;
  /// Selects by index of an item there is.
  void selectItem(int index) const;
  /// Selects the first item with exactly this title; changes nothing when there is none.
  void selectItem(const std::string& title) const;

 private:
  using Button::Button;
};

}  // namespace vorrin
