// tests/store-core/CompanionTest.cpp - the GUI companion: attaching it, and what the own one says.
#include "cor/Counted.h"
#include "plugins/StandInLog.h"
#include "plugins/TestConfiguration.h"
#include "store/core/Exception.h"
#include "store/core/GuiCompanion.h"

#include <gtest/gtest.h>

extern "C" hv::test::StandInLog HvStandInLog;

namespace hv::vex {
namespace {

using test::StandInAnswer;
using test::TestConfiguration;

const std::string kPlugins = HV_BINARY_DIR "/tests/plugins/";

/// Attaches as a control does: starts the companion if it is complete.
class Attached {
 public:
  Attached() : m_complete(AttachGuiCompanion()) {
    if (m_complete) StartGuiCompanion();
  }
  ~Attached() {
    StopGuiCompanion();
    DetachGuiCompanion();
  }
  Attached(const Attached&) = delete;
  Attached& operator=(const Attached&) = delete;
  [[nodiscard]] bool IsComplete() const { return m_complete; }

 private:
  bool m_complete;
};

class Companion : public ::testing::Test {
 protected:
  void SetUp() override { HvStandInLog = {}; }
  void TearDown() override {
    EXPECT_EQ(0U, GetGuiCompanion().attachCount);
    EXPECT_EQ(nullptr, GetGuiCompanion().module);
    EXPECT_EQ(HvStandInLog.loads, HvStandInLog.unloads);
    EXPECT_EQ(0, HvStandInLog.liveObjects);
    EXPECT_EQ(0, HvStandInLog.neverCalled);
  }
};

/// What asking for the companion's object throws: the code and the message.
std::pair<std::int32_t, std::string> Thrown() {
  try {
    (void)CreateCompanionDragDrop();
  } catch (const Exception& exception) {
    return {exception.code, cor::ToUtf8(exception.message)};
  }
  return {0, ""};
}

TEST_F(Companion, IsLoadedOnceAndReadsDragData) {
  const TestConfiguration configuration(kPlugins + "complete");
  const Attached first;
  const Attached second;
  EXPECT_TRUE(first.IsComplete());
  EXPECT_EQ(1, HvStandInLog.loads);
  EXPECT_EQ(2, HvStandInLog.inits);
  EXPECT_EQ(1, CreateCompanionDragDrop()->HoldsQueryConditions(nullptr));
}

TEST_F(Companion, IsIncompleteWithoutAnExportThatNobodyCalls) {
  const TestConfiguration configuration(kPlugins + "lacking");
  const Attached attached;
  EXPECT_FALSE(attached.IsComplete());
  EXPECT_EQ(0, HvStandInLog.inits);
  EXPECT_TRUE(CreateCompanionDragDrop());
}

TEST_F(Companion, SaysThatItIsMissingWhenItIsCalled) {
  const TestConfiguration configuration(kPlugins + "none");
  const Attached attached;
  EXPECT_EQ(std::pair(errc::kNotBound, std::string("gvex not correctly initialized")), Thrown());
}

TEST_F(Companion, PassesOnTheErrorWord) {
  const TestConfiguration configuration(kPlugins + "complete");
  const Attached attached;
  HvStandInLog.answer = StandInAnswer::ErrorWord;
  HvStandInLog.code = -77;
  EXPECT_EQ(std::pair(-77, std::string()), Thrown());
}

/// Drag data with one format.
class OneFormat final : public cor::Counted<IDataObject> {
 public:
  OneFormat(std::u16string_view format, std::size_t size) : m_format(format), m_size(size) {}
  Result GetData(std::u16string_view format, const std::byte** bytes, std::size_t* size) override {
    const bool found = format == m_format;
    *bytes = found ? m_bytes : nullptr;
    *size = found ? m_size : 0;
    return found ? S_OK : S_FALSE;
  }

 private:
  std::u16string m_format;
  std::byte m_bytes[4]{};
  std::size_t m_size;
};

TEST_F(Companion, OwnOneTellsFormatsApart) {
  const TestConfiguration configuration(HV_BINARY_DIR "/lib");
  const Attached attached;
  ASSERT_TRUE(attached.IsComplete());
  const Ref<IDragDrop> drag = CreateCompanionDragDrop();
  const struct {
    std::u16string_view format;
    std::size_t size;
    std::int32_t conditions, properties;
  } rows[] = {
      {u"HV VEX Query Conditions", 4, 1, 0},
      {u"HV VEX Property Descriptions", 4, 0, 1},
      {u"HV VEX Query Conditions", 0, 0, 0},
      {u"text/plain", 4, 0, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(cor::ToUtf8(row.format) + " " + std::to_string(row.size));
    const Ref<OneFormat> data = MakeRef<OneFormat>(row.format, row.size);
    EXPECT_EQ(row.conditions, drag->HoldsQueryConditions(data.Get()));
    EXPECT_EQ(row.properties, drag->HoldsPropertyDescriptions(data.Get()));
    EXPECT_THROW(drag->ListQueryConditions(data.Get(), nullptr), Exception);
  }
  EXPECT_EQ(0, drag->HoldsQueryConditions(nullptr));
}

}  // namespace
}  // namespace hv::vex
