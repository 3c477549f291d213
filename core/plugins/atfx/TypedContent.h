// core/plugins/atfx/TypedContent.h - reads the content of one element that holds typed values.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/model/Model.h"
#include "core/plugins/atfx/NumberText.h"
#include "core/plugins/atfx/ReadContext.h"
#include "core/store/memory/InMemoryValues.h"

namespace hv::vex::engine::atfx {

/// Takes the events inside one element and collects its values, whatever their form: a list of
/// numbers, "s" elements, length and sequence pairs, blobs, external references. Memory grows with
/// what is there, never with what a length claims.
class TypedContent {
 public:
  explicit TypedContent(ReadContext& context) : m_context(context) {}
  TypedContent(const TypedContent&) = delete;
  TypedContent& operator=(const TypedContent&) = delete;

  struct Rules {
    OdsType type = OdsType::String;
    const Enumeration* enumeration = nullptr;  ///< Enum only; null: numbers only
    bool mayBeSigned = false;  ///< Byte only: a value that isn't 0 to 255 makes all of them Shorts
    bool plainBytesAreNumbers = false;  ///< ByteStr only: a list without lengths holds Byte values
  };
  /// Starts an element.
  /// \param what  names it in messages; must stay until `End`.
  void Begin(const Rules& rules, std::u16string_view what);
  void OnStart(std::u16string_view name);
  void OnText(std::u16string_view text);
  void OnEnd();
  /// Closes the element and gives its values; null if it held none at all.
  std::shared_ptr<InMemoryValues> End();
  /// Inside an element: what was collected so far, if it is `size` bytes or more and may be taken
  /// away (by clearing it) without harm to what follows; else null. `End` then gives the rest.
  [[nodiscard]] InMemoryValues* TakeIfLarge(std::size_t size);
  /// Tells that bytes of this element are read as Shorts.
  void WarnOfSignedBytes();
  /// True if a number couldn't be read as an item of the enumeration; after `End`.
  [[nodiscard]] bool HadUnknownItem() const { return m_hadUnknownItem; }

 private:
  enum class Part : std::uint8_t {
    Direct,  // text of the element itself
    Item,    // "s"
    Length,
    Sequence,
    BlobText,
    ByteField,  // holds length and sequence
    Reference,  // holds the three below
    Description,
    MimeType,
    Location,
    Unknown,  // and everything below it
  };
  [[nodiscard]] Part PartOfTag(std::u16string_view name) const;
  [[nodiscard]] bool IsBlankBetweenBytes(std::u16string_view text) const;
  void EndDirectText();
  void EndDirectBytes();
  void AddBlob(std::span<const std::byte> bytes);
  void EndItem();
  void BeginSequence();
  void EndSequence();
  void AddWord(std::u16string_view word);
  void AddEachWord(std::u16string_view text);
  void Feed(std::u16string_view text);
  [[noreturn]] void RefuseNumber();
  void NarrowBytes();

  ReadContext& m_context;
  Rules m_rules;
  std::u16string m_what;
  bool m_isNumeric = false;
  bool m_hadItem = false;
  bool m_hadUnknownItem = false;
  bool m_wasTaken = false;  // some of the values
  Part m_part = Part::Direct;
  std::vector<Part> m_outer;
  NumberList m_numbers;
  std::shared_ptr<InMemoryValues> m_values;
  std::u16string m_text;    // of the part that is open
  std::u16string m_direct;  // of the element itself, if it isn't numeric
  std::u16string m_reference[3];
  std::u16string m_blobHeader;
  std::shared_ptr<InMemoryValues> m_sequence;  // bytes of the open sequence
  std::int64_t m_claimedLength = -1;
};

}  // namespace hv::vex::engine::atfx
