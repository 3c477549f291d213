// browse/SymbolImage.cpp - the built-in pictures.
#include "browse/SymbolImage.h"

#include "embedded/kIcon174.h"
#include "embedded/kIcon9002.h"
#include "embedded/kIcon9003.h"
#include "embedded/kIcon9004.h"
#include "embedded/kIcon9005.h"
#include "embedded/kIcon9006.h"
#include "embedded/kIcon9007.h"
#include "embedded/kIcon9008.h"

namespace hv::vex {

namespace {

/// The pictures live in the library, so nothing is copied.
class BuiltInImage final : public cor::Counted<ISymbolImage> {
 public:
  explicit BuiltInImage(std::string_view content) : m_content(content) {}

  std::string_view GetContent() override { return m_content; }
  std::string_view GetMimeType() override { return "image/svg+xml"; }

 private:
  ~BuiltInImage() override = default;

  std::string_view m_content;
};

struct Resource {
  std::int32_t number;
  std::string_view content;
};
constexpr Resource kResources[] = {
    {174, {embedded::kIcon174, embedded::kIcon174Size}},
    {9002, {embedded::kIcon9002, embedded::kIcon9002Size}},
    {9003, {embedded::kIcon9003, embedded::kIcon9003Size}},
    {9004, {embedded::kIcon9004, embedded::kIcon9004Size}},
    {9005, {embedded::kIcon9005, embedded::kIcon9005Size}},
    {9006, {embedded::kIcon9006, embedded::kIcon9006Size}},
    {9007, {embedded::kIcon9007, embedded::kIcon9007Size}},
    {9008, {embedded::kIcon9008, embedded::kIcon9008Size}},
};

}  // namespace

Ref<ISymbolImage> LoadSymbolResource(std::int32_t resource) {
  for (const Resource& row : kResources) {
    if (row.number == resource) return MakeRef<BuiltInImage>(row.content);
  }
  return {};
}

}  // namespace hv::vex
