// util/conv/TimeFormat.h - times to and from text by a pattern, independent of the process's
// locale. An object serves one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "util/conv/FormatBase.h"
#include "util/conv/TimeRecord.h"

namespace hv::util::conv {

/// Prints and reads times. The order of the operations is frozen. Nothing fails: what isn't a
/// number counts as 0.
///
/// A pattern is made of runs of letters: Y year (two letters are two digits), M month, D day,
/// h hour, m minute, s second, f fraction of a second, p or P the mark of morning or afternoon in
/// small or capital letters ("pp" gives "am", "pppp" gives "a.m."), which makes it a clock of
/// twelve hours. Everything else is literal text.
class ITimeFormat {
 public:
  virtual std::uint32_t Release() = 0;
  virtual std::uint32_t AddRef() = 0;

  /// `Format`.
  virtual void FormatTo(WString* text, const TimeRecord& time) = 0;
  /// `Parse`.
  virtual void ParseFrom(TimeRecord* time, const WString& text) = 0;
  /// Sets a pattern of a language's own letters.
  /// \param letters  nine characters, in the order Y M D h m s f p P
  /// \return false, with the pattern as it was, if there aren't nine letters
  virtual bool SetPatternMapped(std::u16string_view pattern, std::u16string_view letters) = 0;
  /// \return true
  virtual bool SetPattern(std::u16string_view pattern) = 0;
  /// Reads `count` characters; null is an empty text. Gives `*time` back.
  virtual TimeRecord& ParseCounted(TimeRecord* time, const char16_t* text, std::size_t count) = 0;
  /// Reads a time; fields that the text doesn't have are 0. A pattern without literals between its
  /// fields cuts the text by the length of the runs; otherwise fields may have any length, and one
  /// is found by the literal behind it: "10:20" are hour and minute of a date with its time. Gives
  /// `*time` back.
  virtual TimeRecord& Parse(TimeRecord* time, const WString& text) = 0;
  /// Prints a time. Literals before the first and behind the last field are left out. A run of n
  /// letters f gives n decimals, and one more if that isn't 0. Gives `*text` back.
  virtual WString& Format(WString* text, const TimeRecord& time) = 0;

 protected:
  ~ITimeFormat() = default;
};

/// The time format.
class TimeFormatImp final : public tFormatBase<ITimeFormat> {
 public:
  TimeFormatImp() = default;

  void FormatTo(WString* text, const TimeRecord& time) override;
  void ParseFrom(TimeRecord* time, const WString& text) override;
  bool SetPatternMapped(std::u16string_view pattern, std::u16string_view letters) override;
  bool SetPattern(std::u16string_view pattern) override;
  TimeRecord& ParseCounted(TimeRecord* time, const char16_t* text, std::size_t count) override;
  TimeRecord& Parse(TimeRecord* time, const WString& text) override;
  WString& Format(WString* text, const TimeRecord& time) override;

 private:
  ~TimeFormatImp() override = default;

  using Pieces = std::vector<std::u16string_view>;

  /// Cut `text` into pieces, one a token; a token that the text doesn't have gets an empty one.
  void CutFixed(std::u16string_view text);
  void CutFree(std::u16string_view text);
  /// Moves the current token behind the next one that equals `literal`, and adds an empty piece for
  /// each one between; behind the last one, and nothing is added, if there is none.
  void StepBehind(std::u16string_view literal, std::size_t* token);
  [[nodiscard]] TimeRecord Interpret() const;
  /// Reads a text that has the pattern's literals, each where it belongs, up to its end; what most
  /// texts are, and what `CutFree` reads alike. False for any other, with `*time` untouched.
  bool ReadAsPrinted(std::u16string_view text, TimeRecord* time) const;
  /// Reads a field's piece. A literal's piece, and a mark's, changes nothing.
  static void ReadField(std::u16string_view token, std::u16string_view piece, TimeRecord* time);

  /// Makes the steps of `Format` from the tokens.
  void PreparePrinting();

  /// A field, and the literal text that it is printed behind.
  struct Step {
    std::u16string literal;
    std::size_t token = 0;
  };

  std::vector<std::u16string> m_tokens;
  std::vector<Step> m_steps;
  std::u16string m_scratch;  // as long as any text that the pattern prints
  bool m_fixedWidth = true;
  bool m_twelveHour = false;
  Pieces m_pieces;  // kept between calls for its memory; views into the text of the call
};

/// A format without a pattern. Throws std::bad_alloc.
[[nodiscard]] Ref<ITimeFormat> CreateTimeFormat();

}  // namespace hv::util::conv
