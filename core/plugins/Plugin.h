// core/plugins/Plugin.h - what a kind of store offers to the engine: one row of functions each.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/plugins/TagText.h"
#include "core/store/RecordStore.h"
#include "core/store/Watch.h"

namespace hv::vex::engine {

/// A view of the parameter text with which a store is opened or written, and who watches that; both
/// must outlive it.
class ConnectParameters {
 public:
  explicit ConnectParameters(std::u16string_view tagText, Watch watch = {})
      : m_text(tagText), m_watch(watch) {}

  /// To be told of the progress of work that takes long, and asked whether it may go on.
  [[nodiscard]] const Watch& Watcher() const { return m_watch; }

  [[nodiscard]] std::u16string_view TagText() const { return m_text; }
  /// The content of a tag with its escapes resolved; nothing if there is no such tag.
  [[nodiscard]] std::optional<std::u16string> Get(std::u16string_view tag) const {
    const std::optional<TagView> found = FindTag(m_text, tag);
    if (!found) return std::nullopt;
    return UnescapeTagText(found->content);
  }
  /// The same with white space cut off both ends, and nothing for an empty content.
  [[nodiscard]] std::optional<std::u16string> GetTrimmed(std::u16string_view tag) const {
    const std::optional<TagView> found = FindTag(m_text, tag);
    if (!found) return std::nullopt;
    const std::u16string_view trimmed = detail::TrimTagText(found->content);
    if (trimmed.empty()) return std::nullopt;
    return UnescapeTagText(trimmed);
  }
  /// True if the file name's tag is marked so (`<filename readonly='yes'>`), or if a tag "readonly"
  /// says so.
  [[nodiscard]] bool IsReadOnly() const {
    if (const auto file = FindTag(m_text, u"filename")) {
      if (const auto mark = FindTagAttribute(file->attributes, u"readonly")) return MeansYes(*mark);
    }
    const auto tag = FindTag(m_text, u"readonly");
    return tag && MeansYes(detail::TrimTagText(tag->content));
  }

 private:
  static bool MeansYes(std::u16string_view text) {
    std::u16string folded(text);
    for (char16_t& c : folded) {
      if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + (u'a' - u'A'));
    }
    return folded == u"yes" || folded == u"true" || folded == u"1";
  }

  std::u16string_view m_text;
  Watch m_watch;
};

/// A kind of store. Functions may be null where the kind can't do that. All throw
/// hv::vex::Exception and nothing else.
struct PluginInfo {
  std::u16string_view name;
  bool supportsQueries = true;
  /// Endings of the files that it opens, separated by ";"; may be empty.
  std::u16string_view fileExtensions = {};
  /// Opens an existing store. A failure leaves nothing behind.
  std::unique_ptr<RecordStore> (*open)(const ConnectParameters& parameters) = nullptr;
  /// Makes a new empty store of this model. Without a file name it lives in memory only and its
  /// `Save` does nothing.
  std::unique_ptr<RecordStore> (*create)(const ConnectParameters& parameters,
                                         std::shared_ptr<const Model> model) = nullptr;
  /// Writes a whole store of any kind into the file that the parameters name, replacing it.
  void (*write)(const RecordStore& source, const ConnectParameters& parameters) = nullptr;
  /// Opens, read-only, a store whose file's whole text is in memory.
  std::unique_ptr<RecordStore> (*openText)(const ConnectParameters& parameters,
                                           std::u16string_view text) = nullptr;
  /// The text of the file that `write` would write.
  std::u16string (*writeText)(const RecordStore& source) = nullptr;
};

}  // namespace hv::vex::engine
