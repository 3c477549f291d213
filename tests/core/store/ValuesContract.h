// tests/core/store/ValuesContract.h - what every record store must do: local columns, and sessions.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

#include "RecordStoreContract.h"

namespace hv::vex::engine::test {

/// A record store with one local column.
class RecordStoreValuesContract : public RecordStoreContract {
 protected:
  RecordStoreValuesContract() : column(Make(m.column, 1)) {}

  void Write(const Value& value, bool append = false) {
    store->WriteValues(column, value, {}, append);
  }
  void Put(std::uint64_t first, const Value& value, ColumnPart part = ColumnPart::Values) {
    store->PutValues(column, part, first, value);
  }
  std::string Values() const { return ValuesText(store->OpenValues(column).get()); }
  std::string Flags() const { return ValuesText(store->OpenFlags(column).get()); }

  std::vector<std::int64_t> Integers(std::uint64_t first, std::uint64_t count) const {
    std::vector<std::int64_t> values(count);
    store->OpenValues(column)->ReadIntegers(first, values);
    return values;
  }
  std::vector<double> Reals(std::uint64_t first, std::uint64_t count) const {
    const auto source = store->OpenValues(column);
    std::vector<double> values(count * PartsOf(source->Type()));
    source->ReadReals(first, values);
    return values;
  }
  std::vector<std::u16string> Texts(std::uint64_t first, std::uint64_t count) const {
    std::vector<std::u16string> values;
    store->OpenValues(column)->ReadTexts(
        first, count, [&](std::u16string_view text) { values.emplace_back(text); });
    return values;
  }

  RecordRef column;
};

TEST_P(RecordStoreValuesContract, WritesAndReadsNumbersOfEveryType) {
  const std::pair<OdsType, std::vector<double>> kCases[] = {
      {OdsType::Boolean, {1, 0, 1}},
      {OdsType::Byte, {0, 255, 7}},
      {OdsType::Short, {-32768, 32767, 0}},
      {OdsType::Long, {-2147483647, 5, 2147483647}},
      {OdsType::LongLong, {4611686018427387904, -3, 0}},
      {OdsType::Float, {0.5, -1.25, 34359738368}},
      {OdsType::Double, {0.1, 1e300, -7}},
      {OdsType::Complex, {1, 2, 3, 4, 5, 6}},
      {OdsType::DComplex, {0.1, 0.2, 0.3, 0.4, 0.5, 0.6}},
  };
  EXPECT_EQ(nullptr, store->OpenValues(column));
  EXPECT_EQ(nullptr, store->OpenFlags(column));
  for (const auto& [type, numbers] : kCases) {
    SCOPED_TRACE(static_cast<int>(type));
    const auto parts = static_cast<std::ptrdiff_t>(PartsOf(type));
    const bool isWhole = StorageKindOf(type) == StorageKind::Integer;
    const Value::Integers integers(numbers.begin(), isWhole ? numbers.end() : numbers.begin());
    Value value{type, true, numbers};
    if (isWhole) value.data = integers;
    Write(value);
    ASSERT_NE(nullptr, store->OpenValues(column));
    EXPECT_EQ(type, store->OpenValues(column)->Type());
    ASSERT_EQ(3u, store->OpenValues(column)->Count());
    EXPECT_EQ(numbers, Reals(0, 3));
    EXPECT_EQ(std::vector<double>(numbers.end() - parts, numbers.end()), Reals(2, 1));
    if (isWhole) {
      EXPECT_EQ(integers, Integers(0, 3));
      EXPECT_EQ(integers[1], Integers(1, 1)[0]);
    }
    EXPECT_NE(0, CodeOf([&] { (void)Integers(2, 2 * PartsOf(type)); }));
  }
}

TEST_P(RecordStoreValuesContract, ConvertsRealsToWholeNumbersWithinTheirRange) {
  Write(Doubles({2.9, -2.9, std::nan(""), 1e300, -1e300}));
  using Limits = std::numeric_limits<std::int64_t>;
  EXPECT_EQ((Value::Integers{2, -2, 0, Limits::max(), Limits::min()}), Integers(0, 5));
  EXPECT_EQ(errc::kWrongType, CodeOf([&] { (void)Texts(0, 5); }));
}

TEST_P(RecordStoreValuesContract, TakesValuesAndFlagsAsAttributesToo) {
  Set(column, u"Values", {OdsType::Float, true, Value::Reals{1.5, 2.5}});
  Set(column, u"Flags", Shorts({15, 0}));
  EXPECT_EQ("1.5 2.5", Values());
  EXPECT_EQ("15 0", Flags());
  EXPECT_FALSE(Get(column, u"Values").IsSet()) << "they may be long, and are opened instead";
  EXPECT_EQ(errc::kWrongType, CodeOf([&] { Set(column, u"Flags", Longs({1})); }));
  Set(column, u"Flags", Value::Unset(OdsType::Short, true));
  EXPECT_EQ(nullptr, store->OpenFlags(column));
}

TEST_P(RecordStoreValuesContract, GivesNumbersAsTheyLieIfItGivesThemAtAll) {
  Write(Shorts({-2, 258}));
  const auto source = store->OpenValues(column);
  const std::span<const std::byte> bytes = source->Contiguous();
  EXPECT_EQ("-2 258", ValuesText(source.get()));
  if (bytes.empty()) return;  // they lie elsewhere, and reading them is the only way
  const unsigned char expected[] = {0xFE, 0xFF, 0x02, 0x01};
  ASSERT_EQ(sizeof expected, bytes.size());
  EXPECT_EQ(0, std::memcmp(expected, bytes.data(), sizeof expected));
}

TEST_P(RecordStoreValuesContract, WritesAndReadsTextsAndBytes) {
  Write({OdsType::String, true, Value::Texts{u"plain", u"", u"Zürich", u"odd", u"\U0001F600"}});
  EXPECT_EQ("'plain' '' 'Zürich' 'odd' '\U0001F600'", Values());
  EXPECT_EQ(u"Zürich", Texts(2, 1).at(0));
  Write({OdsType::ByteStr, true,
         Value::ByteStrings{{std::byte{1}}, {}, {std::byte{2}, std::byte{0}}}});
  EXPECT_EQ("x01 x x0200", Values());
}

TEST_P(RecordStoreValuesContract, AppendsValuesAndFillsFlagsUp) {
  Write(Longs({1, 2}), true);
  EXPECT_EQ("-", Flags());
  const std::int16_t some[] = {0, 15};
  store->WriteValues(column, Longs({3, 4}), some, true);
  Write(Longs({5}), true);
  EXPECT_EQ("1 2 3 4 5", Values());
  EXPECT_EQ("15 15 0 15 15", Flags());

  EXPECT_EQ(errc::kInvalidArgument,
            CodeOf([&] { store->WriteValues(column, Longs({1}), some, true); }));
  EXPECT_EQ(errc::kWrongType, CodeOf([&] { Write(Doubles({1}), true); }));
  EXPECT_EQ(errc::kWrongType, CodeOf([&] { Write(Longs({std::int64_t{1} << 40})); }));
  EXPECT_EQ("1 2 3 4 5", Values()) << "what was refused changed nothing";
  EXPECT_EQ(errc::kNotSupported,
            CodeOf([&] { store->WriteValues(Make(m.run, 1), Longs({1}), {}, false); }));

  Write(Longs({9}));
  EXPECT_EQ("9", Values());
  EXPECT_EQ("-", Flags()) << "the old values' flags went with them";
  store->Delete(column);
  EXPECT_EQ(errc::kInstanceGone, CodeOf([&] { (void)store->OpenValues(column); }));
  EXPECT_EQ(nullptr, store->OpenValues(Make(m.column, 1))) << "a new record of the old id is empty";
}

TEST_P(RecordStoreValuesContract, PutsNumbersInPlaceOfOthers) {
  Value::Reals expected(200000);  // more than a store may keep in one piece
  std::iota(expected.begin(), expected.end(), 0.0);
  Write(Doubles(expected));
  const auto put = [&](std::uint64_t first, const Value::Reals& values) {
    expected.resize(std::max<std::size_t>(expected.size(), first + values.size()));
    std::copy(values.begin(), values.end(), expected.begin() + static_cast<std::ptrdiff_t>(first));
    Put(first, Doubles(values));
  };
  const auto before = store->OpenValues(column);
  for (const std::uint64_t at : {0, 65535, 65536, 199999})
    put(at, {-1.5 - static_cast<double>(at)});
  put(65000, Value::Reals(70000, 0.25));
  put(200000, {7, 8});  // behind the last: they are added
  EXPECT_TRUE(expected == Reals(0, expected.size()));
  double old = 0;
  const std::int32_t code = CodeOf([&] { before->ReadReals(1, {&old, 1}); });
  EXPECT_TRUE(code == errc::kInstanceGone || old == 1.0) << "opened before, code " << code;

  EXPECT_EQ(errc::kInvalidArgument, CodeOf([&] { Put(200003, Doubles({1})); }));
  EXPECT_EQ(errc::kInvalidArgument, CodeOf([&] { Put(200001, Doubles({1, 2})); }));
  EXPECT_EQ(errc::kWrongType, CodeOf([&] { Put(0, Longs({1})); }));
  EXPECT_EQ(errc::kWrongType, CodeOf([&] { Put(0, Value::Unset(OdsType::Double, true)); }));
  EXPECT_TRUE(expected == Reals(0, expected.size()));
  EXPECT_EQ(200002u, store->OpenValues(column)->Count());
}

TEST_P(RecordStoreValuesContract, PutsFlagsAndChecksThem) {
  const auto put = [&](ColumnPart part, OdsType type, std::uint64_t first, std::int64_t value) {
    return CodeOf([&] { Put(first, {type, true, Value::Integers{value}}, part); });
  };
  EXPECT_EQ(0, put(ColumnPart::Values, OdsType::Byte, 0, 3));
  EXPECT_EQ(0, put(ColumnPart::Flags, OdsType::Short, 0, 9));
  EXPECT_EQ(0, put(ColumnPart::Values, OdsType::Byte, 1, 4)) << "its flag comes by itself";
  EXPECT_EQ(0, put(ColumnPart::Flags, OdsType::Short, 0, 0));
  EXPECT_EQ(0, put(ColumnPart::Values, OdsType::Byte, 0, 255));
  EXPECT_EQ(errc::kWrongType, put(ColumnPart::Values, OdsType::Byte, 0, 256));
  EXPECT_EQ(errc::kWrongType, put(ColumnPart::Flags, OdsType::Long, 0, 1));
  EXPECT_EQ(errc::kInvalidArgument, put(ColumnPart::Flags, OdsType::Short, 3, 1));
  EXPECT_EQ("255 4", Values());
  EXPECT_EQ("0 15", Flags());
  EXPECT_EQ(errc::kNotSupported,
            CodeOf([&] { store->PutValues(Make(m.run, 1), ColumnPart::Values, 0, Longs({1})); }));
}

TEST_P(RecordStoreValuesContract, PutsTextsAndByteStringsOfAnyLength) {
  Value::Texts texts(3000, u"ä");
  Write({OdsType::String, true, texts});
  const auto before = store->OpenValues(column);
  std::uint64_t seed = 1;
  for (int i = 0; i < 2500; ++i) {  // most grow, so that pieces must be cut up
    seed = seed * 6364136223846793005u + 1442695040888963407u;
    const std::size_t at = (seed >> 33) % texts.size();
    texts[at].assign(i % 10 == 0 ? 0 : 900 + at % 200, i % 3 == 0 ? u'é' : u'x');
    Put(at, {OdsType::String, true, Value::Texts{texts[at]}});
  }
  EXPECT_TRUE(texts == Texts(0, texts.size()));
  const std::int32_t code = CodeOf(
      [&] { before->ReadTexts(2999, 1, [](std::u16string_view text) { EXPECT_EQ(u"ä", text); }); });
  EXPECT_TRUE(code == 0 || code == errc::kInstanceGone) << code;
  store->Save(u"");
  Put(7, {OdsType::String, true, Value::Texts{u"lost"}});
  store->Discard();
  EXPECT_TRUE(texts == Texts(0, texts.size()));

  Write({OdsType::ByteStr, true, Value::ByteStrings(3)});
  const Value::ByteStrings put{{std::byte{0}, std::byte{1}}, {}, {std::byte{2}}};
  for (const std::size_t at : {2, 1, 0}) {
    Put(at, {OdsType::ByteStr, true, Value::ByteStrings{put[at]}});
  }
  EXPECT_EQ("x0001 x x02", Values());
}

TEST_P(RecordStoreValuesContract, GivesParametersOfImplicitColumnsAsTheyAre) {
  Set(column, u"Representation", Value::Integer(OdsType::Enum, 2));
  Set(column, u"Parameters", Doubles({10, 0.5}));
  EXPECT_EQ("10 0.5", Values());
  Set(column, u"Representation", Value::Integer(OdsType::Enum, 4));
  EXPECT_EQ(nullptr, store->OpenValues(column)) << "raw columns have values of their own";
  Set(column, u"Representation", Value::Integer(OdsType::Enum, 2));
  for (const std::uint64_t at : {1, 2}) Put(at, Doubles({4}));
  EXPECT_EQ("10 4 4", Values()) << "what is put makes them values of its own";
}

// --- sessions ----------------------------------------------------------------------------------

TEST_P(RecordStoreValuesContract, DiscardsWhatWasNotSaved) {
  m.Link(*store, "P1.Runs+R1 P1.Runs+R2");
  SetText({m.run, 1}, u"Note", u"kept");
  Write(Longs({1}));
  EXPECT_TRUE(store->IsModified());
  store->Save(u"");
  EXPECT_FALSE(store->IsModified());
  const std::string saved = DumpStore(*store);

  m.Link(*store, "P2.Runs+R1");
  SetText({m.run, 1}, u"Note", u"dropped");
  store->Delete({m.run, 2});
  Write(Longs({2}), true);
  store->SetInstanceAttribute({m.run, 1}, {u"Oil", Value::Integer(OdsType::Long, 1), 0});
  EXPECT_TRUE(store->IsModified());
  store->Discard();
  EXPECT_FALSE(store->IsModified());
  EXPECT_EQ(saved, DumpStore(*store));
}

TEST_P(RecordStoreContract, RefreshLeavesUnsavedWorkAlone) {
  EXPECT_FALSE(store->IsModified());
  Make(m.run, 1);
  store->Refresh();
  EXPECT_TRUE(store->Exists({m.run, 1}));
  EXPECT_TRUE(store->IsModified());
  store->Save(u"");
  store->Refresh();
  EXPECT_TRUE(store->Exists({m.run, 1}));
  EXPECT_FALSE(store->IsModified());
}

}  // namespace hv::vex::engine::test
