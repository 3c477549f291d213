// tests/store/properties/RigFixture.h - the properties of the records of rig.atfx.
#pragma once

#include <string>
#include <string_view>

#include "store/properties/StorePropertiesImpl.h"
#include "store/properties/StorePropertiesInt.h"
#include "tests/elements/EngineFixture.h"
#include "tests/elements/Script.h"

namespace hv::test {

/// Opens a copy of tests/data/store/properties/rig.atfx in a session of the engine.
class RigTest : public FleetTest {
 protected:
  RigTest() {
    std::filesystem::copy_file(std::string(HV_TEST_DATA_DIR) + "/store/properties/rig.atfx",
                               m_folder / "rig.atfx");
    OpenRig(u"<filename>");
  }

  /// Opens the file again and shows the properties of the first rig. The tag may have an attribute.
  void OpenRig(std::u16string_view tag) {
    const WString parameters =
        WString(tag) + cor::FromUtf8((m_folder / "rig.atfx").string()) + u"</filename>";
    m_store =
        Ref<vex::IStore>::Adopt(m_environment->OpenStoreByParameter(u"", u"ATFX", parameters, 0));
    Show(u"Rig:1");
  }
  /// Makes the properties of a record, as its element does.
  void Show(std::u16string_view key) {
    m_logic = MakeRef<vex::CStorePropertiesImpl>(*Instance(key));
    ASSERT_EQ(S_OK, m_logic->Fill());
    m_properties = MakeRef<vex::CStorePropertiesInt>(m_logic);
  }
  void ListInstanceProperties(bool list = true) {
    ASSERT_EQ(S_OK, m_logic->SetListInstanceProperties(list ? 1 : 0));
  }

  /// What an expression from the list on gives, as `Answer::Shown` shows it.
  std::string Ask(std::string_view expression) { return Answered(expression).Shown(); }
  Answer Answered(std::string_view expression) { return Eval(m_properties.Get(), expression); }
  std::string Names() { return NamesOf(m_properties.Get()); }
  std::string Add(std::u16string_view name, Variant value, std::int32_t type) {
    return Get(m_properties.Get(), u"Add", Variant::Text(name), std::move(value), Variant::I4(type))
        .Shown();
  }
  /// `Properties(name).Value = value`
  std::string Write(std::u16string_view name, Variant value) {
    return Put(Index(m_properties.Get(), Variant::Text(name)).Object(), u"Value", std::move(value))
        .Shown();
  }
  /// `Properties(name).Values(index) = value`
  std::string WriteAt(std::u16string_view name, std::int32_t index, Variant value) {
    return Put(Index(m_properties.Get(), Variant::Text(name)).Object(), u"Values",
               Variant::I4(index), std::move(value))
        .Shown();
  }
  /// All values of a property, with blanks between them.
  std::string ValuesOf(const std::string& name) {
    std::string all;
    const int size = std::stoi(Ask("Item('" + name + "').Size"));
    for (int i = 0; i < size; ++i) {
      all += (i == 0 ? "" : " ") + Ask("Item('" + name + "').Values(" + std::to_string(i) + ")");
    }
    return all;
  }

  Ref<vex::CStorePropertiesImpl> m_logic;
  Ref<vex::CStorePropertiesInt> m_properties;
};

inline constexpr const char* kRigNames =
    "Id Title Built Double Float Short Long LongLong Byte Active State Tags Levels flags";

}  // namespace hv::test
