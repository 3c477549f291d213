// tests/core/store/ValuesContract.h - what every record store must do: local columns, and sessions.
#pragma once

#include <algorithm>
#include <cstring>
#include <numeric>

#include "RecordStoreContract.h"

namespace hv::vex::engine::test {

inline std::vector<std::int64_t> Integers(const ValueSource& source, std::uint64_t first,
                                          std::uint64_t count) {
  std::vector<std::int64_t> values(count);
  source.ReadIntegers(first, values);
  return values;
}

inline std::vector<double> Reals(const ValueSource& source, std::uint64_t first,
                                 std::uint64_t count) {
  std::vector<double> values(count * PartsOf(source.Type()));
  source.ReadReals(first, values);
  return values;
}

inline std::vector<std::u16string> Texts(const ValueSource& source) {
  std::vector<std::u16string> values;
  source.ReadTexts(0, source.Count(), [&](std::u16string_view text) { values.emplace_back(text); });
  return values;
}

TEST_P(RecordStoreContract, WritesAndReadsColumnValuesOfEveryType) {
  const struct {
    OdsType type;
    Value::Integers integers;
    Value::Reals reals;
  } kCases[] = {
      {OdsType::Boolean, {1, 0, 1}, {}},
      {OdsType::Byte, {0, 255, 7}, {}},
      {OdsType::Short, {-32768, 32767, 0}, {}},
      {OdsType::Long, {-2147483647, 5, 2147483647}, {}},
      {OdsType::LongLong, {std::int64_t{1} << 62, -3, 0}, {}},
      {OdsType::Float, {}, {0.5, -1.25, 3e10}},
      {OdsType::Double, {}, {0.1, 1e300, -7}},
      {OdsType::Complex, {}, {1, 2, 3, 4, 5, 6}},
      {OdsType::DComplex, {}, {0.1, 0.2, 0.3, 0.4, 0.5, 0.6}},
  };
  const RecordRef column = Make(m.column, 1);
  EXPECT_EQ(nullptr, store->OpenValues(column));
  EXPECT_EQ(nullptr, store->OpenFlags(column));
  for (const auto& c : kCases) {
    SCOPED_TRACE(static_cast<int>(c.type));
    Value value{c.type, true, c.integers};
    if (c.integers.empty()) value.data = c.reals;
    store->WriteValues(column, value, {}, false);
    const auto source = store->OpenValues(column);
    ASSERT_NE(nullptr, source);
    EXPECT_EQ(c.type, source->Type());
    ASSERT_EQ(3u, source->Count());
    if (c.integers.empty()) {
      const std::vector<double> all = Reals(*source, 0, 3);
      for (std::size_t i = 0; i < all.size(); ++i)
        EXPECT_FLOAT_EQ(static_cast<float>(c.reals[i]), static_cast<float>(all[i]));
      EXPECT_EQ(PartsOf(c.type), Reals(*source, 2, 1).size());
      EXPECT_EQ(all.back(), Reals(*source, 2, 1).back());
    } else {
      EXPECT_EQ(c.integers, Integers(*source, 0, 3));
      EXPECT_EQ(c.integers[1], Integers(*source, 1, 1)[0]);
      EXPECT_EQ(static_cast<double>(c.integers[2]), Reals(*source, 2, 1)[0]);
    }
    EXPECT_NE(0, CodeOf([&] { (void)Integers(*source, 2, 2 * PartsOf(c.type)); }));
  }
}

TEST_P(RecordStoreContract, ConvertsRealsToWholeNumbersWithinTheirRange) {
  const RecordRef column = Make(m.column, 1);
  const Value::Reals reals{2.9, -2.9, std::nan(""), 1e300, -1e300};
  store->WriteValues(column, {OdsType::Double, true, reals}, {}, false);
  using Limits = std::numeric_limits<std::int64_t>;
  EXPECT_EQ((Value::Integers{2, -2, 0, Limits::max(), Limits::min()}),
            Integers(*store->OpenValues(column), 0, 5));
  EXPECT_EQ(errc::kWrongType, CodeOf([&] { (void)Texts(*store->OpenValues(column)); }));
}

TEST_P(RecordStoreContract, TakesValuesAndFlagsAsAttributesToo) {
  const RecordRef column = Make(m.column, 1);
  Set(column, u"Values", {OdsType::Float, true, Value::Reals{1.5, 2.5}});
  Set(column, u"Flags", {OdsType::Short, true, Value::Integers{15, 0}});
  EXPECT_EQ((Value::Reals{1.5, 2.5}), Reals(*store->OpenValues(column), 0, 2));
  EXPECT_EQ((Value::Integers{15, 0}), Integers(*store->OpenFlags(column), 0, 2));
  EXPECT_FALSE(Get(column, u"Values").IsSet()) << "they may be long, and are opened instead";
  EXPECT_EQ(errc::kWrongType, CodeOf([&] {
              Set(column, u"Flags", {OdsType::Long, true, Value::Integers{1}});
            }));
  Set(column, u"Flags", Value::Unset(OdsType::Short, true));
  EXPECT_EQ(nullptr, store->OpenFlags(column));
}

TEST_P(RecordStoreContract, GivesNumbersAsTheyLieIfItGivesThemAtAll) {
  const RecordRef column = Make(m.column, 1);
  store->WriteValues(column, {OdsType::Short, true, Value::Integers{-2, 258}}, {}, false);
  const auto source = store->OpenValues(column);
  const std::span<const std::byte> bytes = source->Contiguous();
  EXPECT_EQ((Value::Integers{-2, 258}), Integers(*source, 0, 2));
  if (bytes.empty()) return;  // they lie elsewhere, and reading them is the only way
  const unsigned char expected[] = {0xFE, 0xFF, 0x02, 0x01};
  ASSERT_EQ(sizeof expected, bytes.size());
  EXPECT_EQ(0, std::memcmp(expected, bytes.data(), sizeof expected));
}

TEST_P(RecordStoreContract, WritesAndReadsColumnsOfTextsAndBytes) {
  const RecordRef column = Make(m.column, 1);
  const Value::Texts texts{u"plain", u"", u"Zürich", u"odd", u"\U0001F600"};
  store->WriteValues(column, {OdsType::String, true, texts}, {}, false);
  EXPECT_EQ(texts, Texts(*store->OpenValues(column)));
  std::u16string third;
  store->OpenValues(column)->ReadTexts(2, 1, [&](std::u16string_view text) { third = text; });
  EXPECT_EQ(u"Zürich", third);

  const Value::ByteStrings strings{{std::byte{1}}, {}, {std::byte{2}, std::byte{0}}};
  store->WriteValues(column, {OdsType::ByteStr, true, strings}, {}, false);
  Value::ByteStrings got;
  store->OpenValues(column)->ReadBytes(0, 3, [&](std::span<const std::byte> bytes) {
    got.emplace_back(bytes.begin(), bytes.end());
  });
  EXPECT_EQ(strings, got);
}

TEST_P(RecordStoreContract, AppendsValuesAndFillsFlagsUp) {
  const RecordRef column = Make(m.column, 1);
  const auto longs = [](Value::Integers values) {
    return Value{OdsType::Long, true, std::move(values)};
  };
  const auto flags = [&] {
    const auto source = store->OpenFlags(column);
    return source ? Integers(*source, 0, source->Count()) : Value::Integers();
  };
  store->WriteValues(column, longs({1, 2}), {}, true);
  EXPECT_TRUE(flags().empty());
  const std::int16_t some[] = {0, 15};
  store->WriteValues(column, longs({3, 4}), some, true);
  store->WriteValues(column, longs({5}), {}, true);
  EXPECT_EQ((Value::Integers{1, 2, 3, 4, 5}), Integers(*store->OpenValues(column), 0, 5));
  EXPECT_EQ((Value::Integers{15, 15, 0, 15, 15}), flags());

  EXPECT_EQ(errc::kInvalidArgument,
            CodeOf([&] { store->WriteValues(column, longs({1}), some, true); }));
  EXPECT_EQ(errc::kWrongType, CodeOf([&] {
              store->WriteValues(column, {OdsType::Double, true, Value::Reals{1}}, {}, true);
            }));
  EXPECT_EQ(errc::kWrongType,
            CodeOf([&] { store->WriteValues(column, longs({std::int64_t{1} << 40}), {}, false); }));
  EXPECT_EQ(5u, store->OpenValues(column)->Count()) << "what was refused changed nothing";
  EXPECT_EQ(errc::kNotSupported,
            CodeOf([&] { store->WriteValues(Make(m.run, 1), longs({1}), {}, false); }));

  store->WriteValues(column, longs({9}), {}, false);
  EXPECT_EQ((Value::Integers{9}), Integers(*store->OpenValues(column), 0, 1));
  EXPECT_TRUE(flags().empty()) << "the old values' flags went with them";
  store->Delete(column);
  EXPECT_EQ(errc::kInstanceGone, CodeOf([&] { (void)store->OpenValues(column); }));
  EXPECT_EQ(nullptr, store->OpenValues(Make(m.column, 1))) << "a new record of the old id is empty";
}

TEST_P(RecordStoreContract, PutsNumbersInPlaceOfOthers) {
  const RecordRef column = Make(m.column, 1);
  Value::Reals expected(200000);  // more than a store may keep in one piece
  std::iota(expected.begin(), expected.end(), 0.0);
  store->WriteValues(column, {OdsType::Double, true, expected}, {}, false);
  const auto put = [&](std::uint64_t first, Value::Reals values) {
    expected.resize(std::max<std::size_t>(expected.size(), first + values.size()));
    std::copy(values.begin(), values.end(), expected.begin() + static_cast<std::ptrdiff_t>(first));
    store->PutValues(column, ColumnPart::Values, first, {OdsType::Double, true, std::move(values)});
  };
  const auto before = store->OpenValues(column);
  for (const std::uint64_t at : {0, 65535, 65536, 199999})
    put(at, {-1.5 - static_cast<double>(at)});
  put(65000, Value::Reals(70000, 0.25));
  put(200000, {7, 8});  // behind the last: they are added
  EXPECT_TRUE(expected == Reals(*store->OpenValues(column), 0, expected.size()));
  double old = 0;
  const std::int32_t code = CodeOf([&] { before->ReadReals(1, {&old, 1}); });
  EXPECT_TRUE(code == errc::kInstanceGone || old == 1.0) << "opened before, code " << code;

  const auto refused = [&](std::uint64_t first, const Value& values) {
    return CodeOf([&] { store->PutValues(column, ColumnPart::Values, first, values); });
  };
  EXPECT_EQ(errc::kInvalidArgument, refused(200003, {OdsType::Double, true, Value::Reals{1}}));
  EXPECT_EQ(errc::kInvalidArgument, refused(200001, {OdsType::Double, true, Value::Reals{1, 2}}));
  EXPECT_EQ(errc::kWrongType, refused(0, {OdsType::Long, true, Value::Integers{1}}));
  EXPECT_EQ(errc::kWrongType, refused(0, Value::Unset(OdsType::Double, true)));
  EXPECT_TRUE(expected == Reals(*store->OpenValues(column), 0, expected.size()));
  EXPECT_EQ(200002u, store->OpenValues(column)->Count());
}

TEST_P(RecordStoreContract, PutsFlagsAndChecksThem) {
  const RecordRef column = Make(m.column, 1);
  const auto put = [&](ColumnPart part, OdsType type, std::uint64_t first, std::int64_t value) {
    return CodeOf([&] {
      store->PutValues(column, part, first, {type, true, Value::Integers{value}});
    });
  };
  const auto all = [](const std::unique_ptr<ValueSource>& source) {
    return source ? Integers(*source, 0, source->Count()) : Value::Integers();
  };
  EXPECT_EQ(0, put(ColumnPart::Values, OdsType::Byte, 0, 3));
  EXPECT_EQ(0, put(ColumnPart::Flags, OdsType::Short, 0, 9));
  EXPECT_EQ(0, put(ColumnPart::Values, OdsType::Byte, 1, 4)) << "its flag comes by itself";
  EXPECT_EQ(0, put(ColumnPart::Flags, OdsType::Short, 0, 0));
  EXPECT_EQ(0, put(ColumnPart::Values, OdsType::Byte, 0, 255));
  EXPECT_EQ(errc::kWrongType, put(ColumnPart::Values, OdsType::Byte, 0, 256));
  EXPECT_EQ(errc::kWrongType, put(ColumnPart::Flags, OdsType::Long, 0, 1));
  EXPECT_EQ(errc::kInvalidArgument, put(ColumnPart::Flags, OdsType::Short, 3, 1));
  EXPECT_EQ((Value::Integers{255, 4}), all(store->OpenValues(column)));
  EXPECT_EQ((Value::Integers{0, 15}), all(store->OpenFlags(column)));
  EXPECT_EQ(errc::kNotSupported, CodeOf([&] {
              store->PutValues(Make(m.run, 1), ColumnPart::Values, 0,
                               {OdsType::Long, true, Value::Integers{1}});
            }));

  const RecordRef implicit = Make(m.column, 2);
  Set(implicit, u"Representation", Value::Integer(OdsType::Enum, 2));
  Set(implicit, u"Parameters", {OdsType::Double, true, Value::Reals{10, 0.5}});
  for (const std::uint64_t at : {1, 2})
    store->PutValues(implicit, ColumnPart::Values, at, {OdsType::Double, true, Value::Reals{4}});
  EXPECT_EQ((Value::Reals{10, 4, 4}), Reals(*store->OpenValues(implicit), 0, 3));
}

TEST_P(RecordStoreContract, PutsTextsAndByteStringsOfAnyLength) {
  const RecordRef column = Make(m.column, 1);
  Value::Texts texts(3000, u"ä");
  store->WriteValues(column, {OdsType::String, true, texts}, {}, false);
  const auto before = store->OpenValues(column);
  std::uint64_t seed = 1;
  for (int i = 0; i < 2500; ++i) {  // most grow, so that pieces must be cut up
    seed = seed * 6364136223846793005u + 1442695040888963407u;
    const std::size_t at = (seed >> 33) % texts.size();
    texts[at].assign(i % 10 == 0 ? 0 : 900 + at % 200, i % 3 == 0 ? u'é' : u'x');
    store->PutValues(column, ColumnPart::Values, at,
                     {OdsType::String, true, Value::Texts{texts[at]}});
  }
  EXPECT_TRUE(texts == Texts(*store->OpenValues(column)));
  const std::int32_t code = CodeOf([&] { EXPECT_EQ(u"ä", Texts(*before)[2999]); });
  EXPECT_TRUE(code == 0 || code == errc::kInstanceGone) << code;
  store->Save(u"");
  store->PutValues(column, ColumnPart::Values, 7, {OdsType::String, true, Value::Texts{u"lost"}});
  store->Discard();
  EXPECT_TRUE(texts == Texts(*store->OpenValues(column)));

  const RecordRef strings = Make(m.column, 2);
  store->WriteValues(strings, {OdsType::ByteStr, true, Value::ByteStrings(3)}, {}, false);
  const Value::ByteStrings put{{std::byte{0}, std::byte{1}}, {}, {std::byte{2}}};
  for (const std::size_t at : {2, 1, 0})
    store->PutValues(strings, ColumnPart::Values, at,
                     {OdsType::ByteStr, true, Value::ByteStrings{put[at]}});
  Value::ByteStrings got;
  store->OpenValues(strings)->ReadBytes(0, 3, [&](std::span<const std::byte> bytes) {
    got.emplace_back(bytes.begin(), bytes.end());
  });
  EXPECT_EQ(put, got);
}

TEST_P(RecordStoreContract, GivesParametersOfImplicitColumnsAsTheyAre) {
  const RecordRef column = Make(m.column, 1);
  Set(column, u"Representation", Value::Integer(OdsType::Enum, 2));
  Set(column, u"Parameters", {OdsType::Double, true, Value::Reals{10, 0.5}});
  const auto parameters = store->OpenValues(column);
  ASSERT_NE(nullptr, parameters);
  EXPECT_EQ((Value::Reals{10, 0.5}), Reals(*parameters, 0, parameters->Count()));
  Set(column, u"Representation", Value::Integer(OdsType::Enum, 4));
  EXPECT_EQ(nullptr, store->OpenValues(column)) << "raw columns have values of their own";
}

// --- sessions ----------------------------------------------------------------------------------

TEST_P(RecordStoreContract, DiscardsWhatWasNotSaved) {
  LinkScript script(*store, m);
  EXPECT_FALSE(store->IsModified());
  script.Run("P1.Runs+R1 P1.Runs+R2");
  SetText({m.run, 1}, u"Note", u"kept");
  const RecordRef column = Make(m.column, 1);
  store->WriteValues(column, {OdsType::Long, true, Value::Integers{1}}, {}, false);
  EXPECT_TRUE(store->IsModified());
  store->Save(u"");
  EXPECT_FALSE(store->IsModified());

  script.Run("P2.Runs+R1");
  SetText({m.run, 1}, u"Note", u"dropped");
  store->Delete({m.run, 2});
  store->WriteValues(column, {OdsType::Long, true, Value::Integers{2}}, {}, true);
  store->SetInstanceAttribute({m.run, 1}, {u"Oil", Value::Integer(OdsType::Long, 1), 0});
  EXPECT_TRUE(store->IsModified());
  store->Discard();
  EXPECT_FALSE(store->IsModified());
  EXPECT_EQ("P1.Runs=1,2 R1.Project=1", script.State("P1.Runs=1,2 R1.Project=1"));
  EXPECT_FALSE(store->Exists({m.project, 2}));
  EXPECT_EQ(u"kept", Read(m.run, u"Note", {1}));
  EXPECT_EQ(1u, store->OpenValues(column)->Count());
  EXPECT_TRUE(store->InstanceAttributesOf({m.run, 1}).empty());
}

TEST_P(RecordStoreContract, RefreshLeavesUnsavedWorkAlone) {
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
