#include <algorithm>
#include <string>

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
    Explained(m_session.Reading(), [&] {
      const auto values = Ref<IAttribute>::Adopt(m_instance.GetAttributeValue(name));
      if (!values) return;
      const std::int32_t type = values->GetDataType();
      const std::uint64_t count = values->GetCount();
      m_writer.Row({cor::ToUtf8(name), cor::ToUtf8(base), TypeName(type), std::to_string(count),
                    Joined(count, kValuesShown, "; ", [&](std::uint64_t i) {
                      WString text;
                      values->GetText(i, text);
                      std::string cell = cor::ToUtf8(text);
                      return m_isTable && type == kDateType ? ReadableDate(cell) : cell;
                    })});
    });
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
