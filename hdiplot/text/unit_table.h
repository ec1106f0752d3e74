// What a font remembers of its characters, made when first asked for.
#pragma once

#include <array>
#include <memory>
#include <optional>

namespace hdiplot {

// A value for each 16-bit unit. References stay valid.
template <typename Value>
class UnitTable {
 public:
  // The value of `unit`; `make(unit)` gives it the first time.
  template <typename Make>
  const Value& Get(char16_t unit, const Make& make) {
    auto& page = pages_[unit / kPageSize];
    if (page == nullptr) page = std::make_unique<Page>();
    std::optional<Value>& value = (*page)[unit % kPageSize];
    if (!value) value = make(unit);
    return *value;
  }

 private:
  static constexpr size_t kPageSize = 256;
  using Page = std::array<std::optional<Value>, kPageSize>;
  std::array<std::unique_ptr<Page>, 0x10000 / kPageSize> pages_;
};

}  // namespace hdiplot
