#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>

#include "settings/preset.h"

namespace vorrin {

/// Takes named presets from JSON as the parser comes through it, for a tree of thousands of presets
/// takes four times as long to build. Of two members with one name the last counts.
class PresetReader : public nlohmann::json_sax<nlohmann::json> {
 public:
  using Json = nlohmann::json;

  /// Reads a single preset where `isAlone`, which is listed without a name then.
  explicit PresetReader(bool isAlone = false) : depth_(isAlone ? 1 : 0) {}

  /// What was read; nothing when one of the presets was ill-formed.
  std::optional<std::map<std::string, Preset>> presets() &&;

  bool null() override { return read(nullptr); }
  bool boolean(bool value) override { return read(value); }
  bool number_integer(std::int64_t value) override { return read(value); }
  bool number_unsigned(std::uint64_t value) override { return read(value); }
  bool number_float(double value, const std::string&) override { return read(value); }
  bool string(std::string&) override { return read(nullptr); }
  bool binary(Json::binary_t&) override { return false; }
  bool start_object(std::size_t) override;
  bool key(std::string& name) override;
  bool end_object() override;
  bool start_array(std::size_t) override;
  bool end_array() override;
  bool parse_error(std::size_t, const std::string&, const Json::exception&) override {
    return false;
  }

 private:
  enum Member : std::uint8_t { intervals, keys, digit, enabled, other };
  // How many objects and lists are open around what is read.
  static constexpr int ofPresets = 1;
  static constexpr int ofPreset = 2;
  static constexpr int ofList = 3;

  void beginPreset();
  void endPreset();
  bool beginList();
  bool read(const Json& scalar);
  bool readElement(const Json& element);

  int depth_;
  std::string name_;
  Preset preset_;
  Member member_ = other;
  std::array<bool, 5> isRead_{};  ///< whether each member was there and well-formed
  std::map<std::string, Preset> presets_;
  std::set<std::string> illFormed_;
};

}  // namespace vorrin
