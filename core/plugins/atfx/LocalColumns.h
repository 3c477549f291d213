// core/plugins/atfx/LocalColumns.h - puts together the values of local columns, which an ATFX file
// may tell in several places.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/plugins/atfx/ColumnContent.h"
#include "core/plugins/atfx/ComponentFile.h"
#include "core/plugins/atfx/ReadContext.h"
#include "core/store/memory/MemoryBuilder.h"

namespace hv::vex::engine::atfx {

/// File names by the identifiers of the file section.
using FileSection = std::unordered_map<std::u16string, std::u16string>;

/// Values come inline, or from components inside the column, or from instances of external
/// components that point to it; in this order. External components are used up here: they describe
/// storage and don't become records. A column whose values lie in files is shown as one that holds
/// them itself.
class LocalColumns {
 public:
  LocalColumns(ReadContext& context, MemoryBuilder& builder, std::shared_ptr<ComponentFiles> files)
      : m_context(context), m_builder(builder), m_files(std::move(files)) {}
  LocalColumns(const LocalColumns&) = delete;
  LocalColumns& operator=(const LocalColumns&) = delete;

  /// What is known of one column while its instance is read.
  struct Draft {
    std::u16string name;
    InlineValues values, flags;
    std::vector<Component> valueComponents, flagComponents;
    std::optional<std::int64_t> representation, globalFlag;
  };
  void AddColumn(EntityId entity, Row row, RecordId id, Draft&& draft);

  /// One instance of an external component while it is read, by its base attributes.
  struct External {
    Component values;
    std::u16string flagsFile;
    std::uint64_t flagsOffset = 0;
    std::int64_t ordinal = 0;
    std::optional<RecordRef> valuesFile, flagsFileRecord;  ///< AoFile records
  };
  /// Takes the text of an attribute; false if it doesn't parse.
  static bool SetExternalAttribute(External* external, std::u16string_view baseName,
                                   std::u16string_view text);
  void AddExternal(RecordRef record, External&& external);
  /// A link between a column and an external component, found on either side.
  void LinkExternal(RecordRef column, RecordRef external) { m_links.push_back({column, external}); }
  /// A link between an AoFile record and an external component, found on the file's side.
  void LinkFile(RecordRef file, RecordRef external, bool isFlags);
  void SetFileLocation(RecordRef file, std::u16string_view location);

  /// When all instances are read: gives the builder all values that weren't inline.
  void AttachOutside(const FileSection& files);
  /// When the store is made: finds out the types that only the quantities tell, and compares the
  /// lengths with what the sub matrices say.
  void Complete(const MemoryStore& store);

 private:
  /// How to open a column's values, kept by its providers.
  struct Outside {
    std::u16string name;
    std::shared_ptr<ComponentFiles> files;
    std::vector<Component> values, flags;
    bool hasOwnValues = false;        ///< the column itself told its components
    bool countFlagsByValues = false;  ///< flags[i] is as long as values[i] has elements
    OdsType wanted = OdsType::Unknown;
  };
  struct Column {
    RecordRef record;
    Row row;
    std::optional<std::int64_t> representation;
    InlineValues values;
    bool hasOwnFlags;
    std::shared_ptr<Outside> outside;
  };
  struct ExternalLink {
    RecordRef column, external;
  };

  static std::unique_ptr<ValueSource> OpenFlags(const Outside& outside);
  /// Elements of a column as far as they are known without opening a file.
  static std::optional<std::uint64_t> CountOf(const Column& column);
  void AttachExternals();
  void AttachExternal(Column* column, External external);
  void ResolveFile(External* external) const;
  void ShowAsExplicit(const Column& column);
  void FindWantedTypes(const MemoryStore& store, const std::vector<std::size_t>& positions,
                       EntityId entity);
  void CheckRows(const MemoryStore& store, const std::vector<std::size_t>& positions,
                 EntityId entity);

  struct RefHash {
    std::size_t operator()(const RecordRef& ref) const {
      return std::hash<RecordId>()(ref.id) * 31 + ref.entity;
    }
  };

  ReadContext& m_context;
  MemoryBuilder& m_builder;
  std::shared_ptr<ComponentFiles> m_files;
  std::vector<Column> m_columns;
  std::unordered_map<RecordRef, External, RefHash> m_externals;
  std::unordered_map<RecordRef, std::u16string, RefHash> m_locations;
  std::vector<ExternalLink> m_links;
};

}  // namespace hv::vex::engine::atfx
