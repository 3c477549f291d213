#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "apps/cli/Commands.h"
#include "apps/cli/RowWriter.h"
#include "apps/cli/Session.h"
#include "apps/cli/Values.h"
#include "elements/IPropertyImpl.h"
#include "store/elements/IReferencesImpl.h"
#include "store/properties/IStorePropertiesImpl.h"

namespace hv::cli {

using namespace hv::vex;

namespace {

/// How many values of a list, and members of a reference, people see.
constexpr std::uint64_t kValuesShown = 6;
constexpr std::uint64_t kMembersShown = 3;
constexpr std::size_t kBytesShown = 16;

/// Writes a row for each property and each reference of an element.
class ElementWriter final {
 public:
  ElementWriter(Session& session, IStoreElementImpl& element, Format format)
      : m_session(session),
        m_element(element),
        m_instance(*element.GetCoreInstance()),
        m_isTable(format == Format::Table),
        m_writer(format, {{"Member"}, {"Base"}, {"Type"}, {"Count", true}, {"Value"}}) {}

  void Write() {
    WriteProperties();
    WriteColumn();
    WriteReferences();
    m_writer.End();
  }

 private:
  void WriteProperties() {
    Ref<easyImpl::IPropertyCollectionImpl> properties;
    Check(m_element.GetProperties(properties.Put()), m_session.Reading());
    // Those that only this element has belong to it just as well.
    if (const auto all = properties.As<IStorePropertiesImpl>()) {
      Check(all->SetListInstanceProperties(1), m_session.Reading());
    }
    std::int32_t count = 0;
    Check(properties->GetCount(&count), m_session.Reading());
    for (std::int32_t i = 0; i < count; ++i) {
      Ref<easyImpl::IPropertyImpl> property;
      Check(properties->GetItem(i, property.Put()), m_session.Reading());
      WriteProperty(*property);
    }
  }

  void WriteProperty(easyImpl::IPropertyImpl& property) {
    WString name;
    Check(property.GetName(&name), m_session.Reading());
    WString base;
    if (Failed(property.GetBaseName(&base))) base.clear();
    WriteValues(name, base);
  }

  /// The values and flags of a column, which are no properties.
  void WriteColumn() {
    Explained(m_session.Reading(), [&] {
      const auto model = Ref<IModel>::Adopt(m_session.Store().GetModel());
      const auto entity = Ref<IEntity>::Adopt(model->GetEntityOf(&m_instance));
      for (const char16_t* const base : {u"values", u"flags"}) {
        const auto attribute = Ref<IAttribute>::Adopt(entity->GetAttribute(base));
        if (!attribute) continue;
        WString name;
        attribute->GetName(name);
        WriteValues(name, base);
      }
    });
  }

  void WriteValues(const WString& name, const WString& base) {
    Explained(m_session.Reading(), [&] {
      const auto values = Ref<IAttribute>::Adopt(m_instance.GetAttributeValue(name));
      if (!values) return;
      const std::int32_t type = values->GetDataType();
      const std::uint64_t count = values->GetCount();
      m_writer.Row({cor::ToUtf8(name), cor::ToUtf8(base), TypeName(type), std::to_string(count),
                    Joined(count, kValuesShown, "; ", [&](std::uint64_t i) {
                      if (type == kByteStringType || type == kBlobType) return Hex(*values, i);
                      WString text;
                      values->GetText(i, text);
                      std::string cell = cor::ToUtf8(text);
                      return m_isTable && type == kDateType ? ReadableDate(cell) : cell;
                    })});
    });
  }

  /// Bytes in hexadecimal digits; for people the first ones.
  std::string Hex(IAttribute& values, std::uint64_t index) const {
    std::size_t size = 0;
    const std::byte* const bytes = values.GetBytes(index, &size);
    const std::size_t shown = m_isTable ? std::min(size, kBytesShown) : size;
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string digits;
    for (std::size_t i = 0; i < shown; ++i) {
      const auto byte = std::to_integer<unsigned>(bytes[i]);
      digits += kDigits[byte >> 4];
      digits += kDigits[byte & 15];
    }
    return digits + (shown < size ? "..." : "");
  }

  void WriteReferences() {
    Ref<IReferencesImpl> references;
    Check(m_element.GetReferences(references.Put()), m_session.Reading());
    std::int32_t count = 0;
    Check(references->GetCount(&count), m_session.Reading());
    for (std::int32_t i = 0; i < count; ++i) {
      Ref<IReferenceImpl> reference;
      Check(references->GetItem(i, reference.Put()), m_session.Reading());
      WriteReference(*reference);
    }
  }

  /// People see names and keys, programs the keys.
  void WriteReference(IReferenceImpl& reference) {
    WString name;
    WString base;
    Check(reference.GetName(&name), m_session.Reading());
    Check(reference.GetBaseName(&base), m_session.Reading());
    Explained(m_session.Reading(), [&] {
      const auto related = Ref<IInstList>::Adopt(m_instance.GetRelated(name));
      const std::uint64_t count = related->GetCount();
      m_writer.Row({cor::ToUtf8(name), cor::ToUtf8(base), "reference", std::to_string(count),
                    Joined(count, kMembersShown, m_isTable ? "; " : " ", [&](std::uint64_t i) {
                      WString key;
                      related->GetKey(i, key);
                      return m_isTable ? NameOf(*related, i) + " (" + cor::ToUtf8(key) + ")"
                                       : cor::ToUtf8(key);
                    })});
    });
  }

  static std::string NameOf(IInstList& list, std::uint64_t index) {
    const auto instance = Ref<IInstance>::Adopt(list.GetInstance(index));
    WString name;
    if (const auto values = instance.As<IContainer>()) values->GetString(name, u"name");
    return cor::ToUtf8(name);
  }

  /// All values of a list, or for people the first ones and a sign that there are more.
  template <class TextAt>
  std::string Joined(std::uint64_t count, std::uint64_t most, const char* separator,
                     TextAt textAt) const {
    const std::uint64_t shown = m_isTable ? std::min(count, most) : count;
    std::string joined;
    for (std::uint64_t i = 0; i < shown; ++i) {
      if (i > 0) joined += separator;
      joined += textAt(i);
    }
    if (shown < count) joined += std::string(separator) + "...";
    return joined;
  }

  Session& m_session;
  IStoreElementImpl& m_element;
  IInstance& m_instance;
  bool m_isTable;
  RowWriter m_writer;
};

}  // namespace

void RunShow(const ShowOptions& options) {
  Session session(options.store);
  const Ref<IStoreElementImpl> element = session.ElementOf(options.key);
  ElementWriter(session, *element, options.format).Write();
  TellRemarks(session.Store(), options.warnings);
}

}  // namespace hv::cli
