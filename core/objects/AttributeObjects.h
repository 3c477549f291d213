// core/objects/AttributeObjects.h - values at the seam: one class per place where a value may live.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cor/Counted.h"
#include "core/model/Value.h"
#include "core/objects/ModelObjects.h"
#include "core/objects/ValueText.h"
#include "store/core/Exception.h"
#include "store/core/IAttribute.h"
#include "store/core/IInstList.h"

namespace hv::vex::engine {

/// A value held as a copy. Written values go on to `write`; without one the value is read-only.
class ValueAttribute final : public cor::Counted<IAttribute> {
 public:
  using Writer = std::function<void(const Value&)>;
  ValueAttribute(std::u16string name, Value value, EnumPtr enumeration = nullptr,
                 std::shared_ptr<const Model> model = nullptr, Writer write = nullptr);
  /// A read-only list of texts.
  static IAttribute* MakeTextList(std::u16string name, std::vector<std::u16string> texts);

  std::uint64_t GetCount() override;
  void GetName(WString& name) override;
  std::int32_t GetDataType() override;
  void GetStringValue(WString& value) override;
  const void* GetData() override;
  IInstIterator* GetIterator() override { return nullptr; }
  std::int64_t GetInteger(std::uint64_t index) override;
  double GetReal(std::uint64_t index) override;
  void GetText(std::uint64_t index, WString& value) override;
  const std::byte* GetBytes(std::uint64_t index, std::size_t* size) override;
  void ReadReals(std::uint64_t first, std::uint64_t count, double* out) override;
  void ReadIntegers(std::uint64_t first, std::uint64_t count, std::int64_t* out) override;
  std::int32_t IsWritable() override { return m_write ? 1 : 0; }
  void Clear() override;
  void SetCount(std::uint64_t count) override;
  void SetInteger(std::uint64_t index, std::int64_t value) override;
  void SetReal(std::uint64_t index, double value) override;
  void SetText(std::uint64_t index, std::u16string_view value) override;
  void SetBytes(std::uint64_t index, const std::byte* bytes, std::size_t size) override;
  void SetReals(std::uint64_t count, const double* values) override;
  void SetIntegers(std::uint64_t count, const std::int64_t* values) override;
  void SetDataType(std::int32_t typeCode) override;

  [[nodiscard]] const Value& Get() const { return m_value; }

 private:
  ~ValueAttribute() override = default;
  /// Changes a copy, hands it on, and keeps it only if it was accepted.
  template <class Change>
  void Write(Change&& change);

  std::u16string m_name;
  Value m_value;
  EnumPtr m_enumeration;
  std::shared_ptr<const Model> m_model;  // keeps the enumeration alive
  Writer m_write;
  std::vector<std::byte> m_dataBuffer;  // what GetData points to
  std::vector<WString> m_textBuffer;
};

/// Values of a local column (or its flags), read by range from where they lie.
class ColumnAttribute final : public cor::Counted<IAttribute> {
 public:
  /// Both null: the values are read-only.
  struct Writer {
    std::function<void(const Value&)> replaceAll;
    std::function<void(std::uint64_t first, const Value&)> put;  ///< see `RecordStore::PutValues`
  };
  using Opener = std::function<std::unique_ptr<ValueSource>()>;
  /// \param isTypeFree  the type may be chosen as long as there are no values
  ColumnAttribute(std::u16string name, OdsType typeIfEmpty, bool isTypeFree, Opener open,
                  Writer write);

  std::uint64_t GetCount() override;
  void GetName(WString& name) override;
  std::int32_t GetDataType() override;
  void GetStringValue(WString& value) override;
  const void* GetData() override;
  IInstIterator* GetIterator() override { return nullptr; }
  std::int64_t GetInteger(std::uint64_t index) override;
  double GetReal(std::uint64_t index) override;
  void GetText(std::uint64_t index, WString& value) override;
  const std::byte* GetBytes(std::uint64_t index, std::size_t* size) override;
  void ReadReals(std::uint64_t first, std::uint64_t count, double* out) override;
  void ReadIntegers(std::uint64_t first, std::uint64_t count, std::int64_t* out) override;
  std::int32_t IsWritable() override { return m_write.put ? 1 : 0; }
  void Clear() override;
  void SetCount(std::uint64_t count) override;
  void SetInteger(std::uint64_t index, std::int64_t value) override;
  void SetReal(std::uint64_t index, double value) override;
  void SetText(std::uint64_t index, std::u16string_view value) override;
  void SetBytes(std::uint64_t index, const std::byte* bytes, std::size_t size) override;
  void SetReals(std::uint64_t count, const double* values) override;
  void SetIntegers(std::uint64_t count, const std::int64_t* values) override;
  void SetDataType(std::int32_t typeCode) override;

 private:
  ~ColumnAttribute() override = default;
  void Open();
  /// Lets go of the values, so that the store may change them where they lie; count and type stay.
  void Close();
  /// The values, opened if they aren't. Only to be called if there are any.
  const ValueSource& Source();
  void CheckRange(std::uint64_t first, std::uint64_t count) const;
  /// Elements `first` to `first + count - 1` as a value.
  [[nodiscard]] Value Load(std::uint64_t first, std::uint64_t count);
  void CheckWritable() const;
  void ReplaceAll(const Value& values);
  /// Changes one value, or adds it behind the last.
  template <class Change>
  void Put(std::uint64_t index, Change&& change);

  std::u16string m_name;
  OdsType m_typeIfEmpty;
  bool m_isTypeFree;
  Opener m_open;
  Writer m_write;
  std::unique_ptr<ValueSource> m_source;  // null: no values, or not open
  bool m_isOpen = false;
  std::uint64_t m_count = 0;
  OdsType m_type;  // of the values there are, or of those to come
  std::vector<std::byte> m_bytes;
  std::vector<std::byte> m_dataBuffer;
  std::vector<WString> m_textBuffer;
};

/// An attribute without values of its own: reading elements and writing are refused.
template <class... Faces>
class ValuelessAttribute : public cor::Counted<IAttribute, Faces...> {
 public:
  void GetStringValue(WString& value) override { value.clear(); }
  const void* GetData() override { return nullptr; }
  std::int64_t GetInteger(std::uint64_t) override { Refuse(); }
  double GetReal(std::uint64_t) override { Refuse(); }
  void GetText(std::uint64_t, WString&) override { Refuse(); }
  const std::byte* GetBytes(std::uint64_t, std::size_t*) override { Refuse(); }
  void ReadReals(std::uint64_t, std::uint64_t, double*) override { Refuse(); }
  void ReadIntegers(std::uint64_t, std::uint64_t, std::int64_t*) override { Refuse(); }
  std::int32_t IsWritable() override { return 0; }
  void Clear() override { Refuse(); }
  void SetCount(std::uint64_t) override { Refuse(); }
  void SetInteger(std::uint64_t, std::int64_t) override { Refuse(); }
  void SetReal(std::uint64_t, double) override { Refuse(); }
  void SetText(std::uint64_t, std::u16string_view) override { Refuse(); }
  void SetBytes(std::uint64_t, const std::byte*, std::size_t) override { Refuse(); }
  void SetReals(std::uint64_t, const double*) override { Refuse(); }
  void SetIntegers(std::uint64_t, const std::int64_t*) override { Refuse(); }
  void SetDataType(std::int32_t) override { Refuse(); }

 protected:
  ~ValuelessAttribute() override = default;

 private:
  [[noreturn]] static void Refuse() {
    throw Exception(errc::kNotSupported, u"this attribute has no values of its own");
  }
};

/// The instances behind a reference (type 40).
class ReferenceAttribute final : public ValuelessAttribute<> {
 public:
  ReferenceAttribute(std::u16string name, Ref<IInstList> list)
      : m_name(std::move(name)), m_list(std::move(list)) {}

  std::uint64_t GetCount() override { return m_list->GetCount(); }
  void GetName(WString& name) override { name = std::u16string_view(m_name); }
  std::int32_t GetDataType() override { return kReferenceType; }
  IInstIterator* GetIterator() override;

 private:
  ~ReferenceAttribute() override = default;
  std::u16string m_name;
  Ref<IInstList> m_list;
};

/// An attribute or reference as the model defines it.
class DefinitionAttribute final : public ValuelessAttribute<IAttributeDefinition> {
 public:
  DefinitionAttribute(Ref<ModelObject> model, EntityId entity, Member member)
      : m_model(std::move(model)), m_entity(entity), m_member(member) {}

  std::uint64_t GetCount() override { return 0; }
  void GetName(WString& name) override;
  std::int32_t GetDataType() override;
  IInstIterator* GetIterator() override { return nullptr; }
  void GetBaseName(WString& name) override;
  std::int32_t IsKey() override;
  void GetOccurrence(std::int32_t* minimum, std::int32_t* maximum) override;
  std::int32_t IsUnique() override;
  std::int32_t IsAutogenerated() override;
  std::int32_t GetLength() override;
  IEntity* GetSourceEntity() override;
  IRelation* GetRelation() override;
  std::uint64_t GetEnumerationCount() override;
  void GetEnumerationItem(std::uint64_t index, WString& name, std::int64_t* value) override;
  void GetEnumerationName(WString& name) override;
  std::int64_t GetUnitId() override;

 private:
  ~DefinitionAttribute() override = default;
  [[nodiscard]] const Attribute* AttributeOrNull() const;
  [[nodiscard]] const Relation* RelationOrNull() const;
  [[nodiscard]] EnumPtr EnumerationOrNull() const;
  Ref<ModelObject> m_model;
  EntityId m_entity;
  Member m_member;
};

}  // namespace hv::vex::engine
