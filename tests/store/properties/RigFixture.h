// tests/store/properties/RigFixture.h - the properties of the records of rig.atfx.
#pragma once

#include <string>
#include <string_view>

#include "store/properties/StorePropertiesImpl.h"
#include "store/properties/StorePropertiesInt.h"
#include "tests/elements/EngineFixture.h"
#include "tests/support/Script.h"

namespace hv::test {

/// Opens a copy of tests/data/store/properties/rig.atfx in a session of the engine. In scripts,
/// `p` are the properties of the record that is shown.
class RigTest : public FleetTest {
 protected:
  RigTest() {
    std::filesystem::copy_file(std::string(HV_TEST_DATA_DIR) + "/store/properties/rig.atfx",
                               m_folder.File("rig.atfx"));
    OpenRig(u"<filename>");
  }

  /// Opens the file again and shows the properties of the first rig. The tag may have an attribute.
  void OpenRig(std::u16string_view tag) {
    const WString parameters =
        WString(tag) + cor::FromUtf8(m_folder.File("rig.atfx").string()) + u"</filename>";
    m_store =
        Ref<vex::IStore>::Adopt(m_environment->OpenStoreByParameter(u"", u"ATFX", parameters, 0));
    Show(u"Rig:1");
  }
  /// Makes the properties of a record, as its element does.
  void Show(std::u16string_view key, bool listInstanceProperties = false) {
    m_logic = MakeRef<vex::CStorePropertiesImpl>(*Instance(key));
    ASSERT_EQ(S_OK, m_logic->Fill());
    m_properties = MakeRef<vex::CStorePropertiesInt>(m_logic);
    m_script.Set("p", Variant::Object(m_properties.Get()));
    List(listInstanceProperties);
  }
  void List(bool listInstanceProperties = true) {
    ASSERT_EQ(S_OK, m_logic->SetListInstanceProperties(listInstanceProperties ? 1 : 0));
  }

  std::string Ask(std::string_view line) { return m_script.Show(line); }
  void Expect(const std::vector<Line>& lines) { m_script.Expect(lines); }
  /// All values of a property, with blanks between them.
  std::string ValuesOf(const std::string& name) {
    const std::string item = "p('" + name + "').";
    std::string all;
    const int size = std::stoi(Ask(item + "Size"));
    for (int i = 0; i < size; ++i) {
      all += (i == 0 ? "" : " ") + Ask(item + "Values(" + std::to_string(i) + ")");
    }
    return all;
  }
  static std::string Names(const std::string& further = "") {
    return "[Id|Title|Built|Double|Float|Short|Long|LongLong|Byte|Active|State|Tags|Levels|flags" +
           further + "]";
  }

  Ref<vex::CStorePropertiesImpl> m_logic;
  Ref<vex::CStorePropertiesInt> m_properties;
  Script m_script;
};

}  // namespace hv::test
