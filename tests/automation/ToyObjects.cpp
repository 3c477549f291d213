// automation/ToyObjects.cpp - bodies and maps of the toy family.
#include "ToyObjects.h"

#include <new>

#include "automation/DispatchError.h"

namespace hv::automation::toys {
namespace {

Result RaiseWithText(CToyInt&, CallFrame& frame) {
  ThrowDispatchError(208, frame.args[0].AsText());
}
Result RaiseFromTable(CToyInt&, CallFrame&) { ThrowDispatchError(263); }

constexpr auto kFullRows =
    Errors(u"FullName", On(E_ACCESSDENIED, 365),
           On(E_INVALIDARG, 212, CallText(1), Literal(u"a"), Literal(u"b")),
           On(DISP_E_TYPEMISMATCH, 214, Literal(u"Item")),
           On(E_POINTER, 211, CallNumber(1), Literal(u"Values")),
           On(VEX_E_LOGIC_UNSUPPORTED, 325, ObjectText(ObjectTextId::StoreName)),
           OnAs(VEX_E_OR_UNSUPPORTED, 325, 326, ObjectText(ObjectTextId::StoreName)),
           On(E_HANDLE, 218, CallTypeName(1)), On(E_OUTOFMEMORY, 215, CallText(9)));
constexpr auto kChangeRows = ErrorsOfChange(u"ChangeName", On(E_FAIL, 344));
constexpr auto kOnlyRows = OnlyErrors(u"OnlyName", On(E_FAIL, 292, Literal(u"Store")));
constexpr auto kNullRows = Errors(
    u"TakeToy", OnNullArgument(1, 222, Literal(u"Toy"), Literal(u"TakeToy"), Literal(u"Val")));

constexpr auto kNamedRows =
    MakeRows(Get<&INamed::get_Name>(u"Name", 1), Put<&INamed::put_Name>(u"Name", 1));
constexpr DispatchMap kNamedMap(u"Named", kNamedRows);

constexpr auto kToyFaceRows =
    MakeRows(Get<&IToy::get_Friend>(u"Friend", 2), Put<&IToy::put_Friend>(u"Friend", 2),
             Get<&IToy::get_Values>(u"Values", 3), Put<&IToy::put_Values>(u"Values", 3),
             Method<&IToy::Join>(u"Join", 4).Optional(2), Method<&IToy::Clear>(u"Clear", 5));
constexpr DispatchMap kToyFaceMap =
    DispatchMap(u"ToyFace", kToyFaceRows, &kNamedMap).WithDefault(3);

constexpr auto kToyRows =
    MakeRows(Method<&CToyInt::Echo<bool>>(u"EchoBool", 10),
             Method<&CToyInt::Echo<std::int8_t>>(u"EchoI8", 11),
             Method<&CToyInt::Echo<std::int16_t>>(u"EchoI16", 12),
             Method<&CToyInt::Echo<std::int32_t>>(u"EchoI32", 13),
             Method<&CToyInt::Echo<std::int64_t>>(u"EchoI64", 14),
             Method<&CToyInt::Echo<std::uint8_t>>(u"EchoU8", 15),
             Method<&CToyInt::Echo<std::uint16_t>>(u"EchoU16", 16),
             Method<&CToyInt::Echo<std::uint32_t>>(u"EchoU32", 17),
             Method<&CToyInt::Echo<std::uint64_t>>(u"EchoU64", 18),
             Method<&CToyInt::Echo<float>>(u"EchoFloat", 19),
             Method<&CToyInt::Echo<double>>(u"EchoDouble", 20),
             Method<&CToyInt::Echo<enumColor>>(u"EchoEnum", 21),
             Method<&CToyInt::Echo<const WString&>>(u"EchoText", 22),
             Method<&CToyInt::Echo<std::u16string_view, WString>>(u"EchoView", 23),
             Method<&CToyInt::Echo<const Variant&>>(u"EchoVariant", 24),
             Method<&CToyInt::EchoObject<IDispatch>>(u"EchoObject", 25),
             Method<&CToyInt::EchoObject<IUnknown>>(u"EchoUnknown", 26),
             Method<&CToyInt::FailText>(u"FailUnlisted", 30),
             Method<&CToyInt::FailObject>(u"FailOnly", 31, kOnlyRows),
             Method<&CToyInt::FailNumber>(u"FailChange", 32, kChangeRows),
             Method<&CToyInt::FailPlain>(u"FailPlain", 33),
             Method<&CToyInt::FailWithText>(u"FailFull", 34, kFullRows),
             Method<&CToyInt::TakeToy>(u"TakeToy", 35, kNullRows),
             Method<&CToyInt::ThrowIt>(u"ThrowIt", 36, kFullRows),
             Method<&CToyInt::Remark>(u"Remark", 37), Method<&CToyInt::LetGo>(u"LetGo", 38),
             Custom<&RaiseWithText>(u"RaiseWithText", 39, CallKind::Method, 1),
             Custom<&RaiseFromTable>(u"RaiseFromTable", 40, CallKind::Get, 0));
constexpr DispatchMap kToyMap =
    DispatchMap(u"Toy", kToyRows, &kToyFaceMap).WithObjectText<&CToyInt::TextFor>();
static_assert(FitsBase(kToyMap));

constexpr auto kBigRows =
    MakeRows(Get<&IToy::get_Friend>(u"Friend", 2), Get<&CBigToyInt::get_Size>(u"size", 50),
             Get<&CBigToyInt::get_Name>(u"Name", 1));
constexpr DispatchMap kBigMap(u"BigToy", kBigRows, &kToyFaceMap);
static_assert(FitsBase(kBigMap));

}  // namespace

const DispatchMap& CToyInt::Map() { return kToyMap; }
const DispatchMap& CBigToyInt::Map() { return kBigMap; }

Result CToyInt::ThrowIt(std::int32_t kind) {
  switch (kind) {
    case 0:
      throw std::bad_alloc();
    case 1:
      throw vex::Exception(vex::errc::kTimeout, u"never shown");
    case 2:
      throw vex::com::cErrCode::eTypeMismatch;
    default:
      throw 5;
  }
}

}  // namespace hv::automation::toys
