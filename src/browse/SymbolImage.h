// browse/SymbolImage.h - the pictures of symbols, which the logic hands on without looking inside.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <storefabric/Ref.h>

#include "cor/Counted.h"

namespace hv::vex {

/// A picture of 16 by 16 units. Immutable, so that copies share it.
class ISymbolImage : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::ISymbolImage");

  /// The picture as it would stand in a file; lives as long as the object.
  virtual std::string_view GetContent() = 0;
  virtual std::string_view GetMimeType() = 0;

 protected:
  ~ISymbolImage() = default;
};

/// A picture that came from outside.
class SymbolImage final : public cor::Counted<ISymbolImage> {
 public:
  SymbolImage(std::string content, std::string mimeType)
      : m_content(std::move(content)), m_mimeType(std::move(mimeType)) {}

  std::string_view GetContent() override { return m_content; }
  std::string_view GetMimeType() override { return m_mimeType; }

 private:
  ~SymbolImage() override = default;

  std::string m_content;
  std::string m_mimeType;
};

/// Numbers of the built-in pictures. Frozen.
inline constexpr std::int32_t kNoSymbolResource = 174;

/// A built-in picture, an SVG drawing: 174 for no symbol, 9002 to 9008 for the standard symbols.
/// Null for any other number.
Ref<ISymbolImage> LoadSymbolResource(std::int32_t resource);

}  // namespace hv::vex
