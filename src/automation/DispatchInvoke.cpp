// automation/DispatchInvoke.cpp - calling by name, written once for all wrappers.
#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "automation/DispatchError.h"
#include "automation/DispatchMap.h"
#include "automation/Guards.h"
#include "automation/MessageFormat.h"
#include "automation/MessageTexts.h"
#include "automation/StringTable.h"

namespace hv::automation {

namespace {

constexpr std::int32_t kTextOutOfMemory = 207;
constexpr std::int32_t kTextTimedOut = 241;
constexpr std::int32_t kTextNotImplemented = 245;
constexpr std::int32_t kTextUnknownError = 250;
constexpr std::int32_t kTextNotLoaded = 254;
constexpr std::int32_t kTextObjectGone = 323;

const MemberRow* FindOwn(const DispatchMap& map, std::int32_t id, CallKind kinds, bool& known) {
  const auto idOf = [&map](std::uint16_t i) { return map.rows[i].id; };
  for (auto at = std::ranges::lower_bound(map.byId, id, {}, idOf);
       at != map.byId.end() && map.rows[*at].id == id; ++at) {
    known = true;
    if (Intersects(map.rows[*at].kind, kinds)) return &map.rows[*at];
  }
  return nullptr;
}

const MemberRow* FindRow(const DispatchMap& map, std::int32_t id, CallKind kinds) {
  bool known = false;
  for (const DispatchMap* level = &map; level; level = level->base) {
    if (const MemberRow* row = FindOwn(*level, id, kinds, known)) return row;
  }
  // No member has taken the id of the default member for itself: another one answers for it.
  if (id == kDispIdValue && !known && map.defaultId != kDispIdValue) {
    return map.defaultId == kDispIdUnknown ? nullptr : FindRow(map, map.defaultId, kinds);
  }
  return nullptr;
}

bool IsNullObject(const Variant& value) {
  switch (value.Type()) {
    case VT_EMPTY:
    case VT_NULL:
      return true;
    case VT_DISPATCH:
      return !value.AsObject();
    case VT_UNKNOWN:
      return !value.AsUnknown();
    default:
      return value.IsMissing();
  }
}

/// The row for a null argument that is refused before the call, if there is one.
const ErrorRow* FindNullArgumentRow(const MemberErrors& errors, std::span<const Variant> args) {
  for (const ErrorRow& row : errors.rows) {
    if (row.nullArgument < 0) continue;
    const auto index = static_cast<std::size_t>(row.nullArgument);
    if (index >= args.size() || IsNullObject(args[index].Dereferenced())) return &row;
  }
  return nullptr;
}

WString TextOfArgument(std::span<const Variant> args, std::size_t index) {
  if (index >= args.size()) return {};
  Variant text;
  if (Failed(args[index].Dereferenced().ChangeType(VT_BSTR, &text))) return {};
  return text.AsText();
}

std::int32_t NumberOfArgument(std::span<const Variant> args, std::size_t index) {
  if (index >= args.size()) return 0;
  Variant number;
  if (Failed(args[index].Dereferenced().ChangeType(VT_I4, &number))) return 0;
  return static_cast<std::int32_t>(number.AsInt64());
}

std::u16string_view TypeNameOfArgument(std::span<const Variant> args, std::size_t index) {
  struct TypeName {
    std::uint16_t type;
    std::u16string_view name;
  };
  static constexpr TypeName kNames[] = {
      {VT_EMPTY, u"Empty"},     {VT_NULL, u"Null"},       {VT_I2, u"Integer"},
      {VT_I4, u"Long"},         {VT_R4, u"Single"},       {VT_R8, u"Double"},
      {VT_CY, u"Currency"},     {VT_DATE, u"Date"},       {VT_BSTR, u"String"},
      {VT_DISPATCH, u"Object"}, {VT_ERROR, u"Error"},     {VT_BOOL, u"Boolean"},
      {VT_UNKNOWN, u"Object"},  {VT_DECIMAL, u"Decimal"}, {VT_UI1, u"Byte"},
      {VT_I8, u"LongLong"},
  };
  if (index >= args.size()) return u"Empty";
  const std::uint16_t type = args[index].Dereferenced().Type();
  const auto at = std::ranges::find(kNames, type, &TypeName::type);
  return at == std::end(kNames) ? u"Variant" : at->name;
}

WString MessageTextOfArgument(std::span<const Variant> args, std::size_t index, ObjectTextId id) {
  if (index >= args.size()) return {};
  const Variant& object = args[index].Dereferenced();
  const auto texts =
      object.Is(VT_DISPATCH) ? QueryRef<IMessageTexts>(object.AsObject()) : Ref<IMessageTexts>();
  return texts ? texts->GetMessageText(id) : WString();
}

/// What a call is made of, for the code that words its failure.
struct CallContext {
  const DispatchMap& map;
  IDispatch& self;
  const MemberRow& row;
  std::span<const Variant> args;
  ErrorInfo& error;
};

MessageArg ValueOf(const ErrorArg& arg, const CallContext& call) {
  switch (arg.source) {
    case ErrorArg::Source::CallText:
      return MessageArg(TextOfArgument(call.args, arg.index));
    case ErrorArg::Source::CallNumber:
      return MessageArg(NumberOfArgument(call.args, arg.index));
    case ErrorArg::Source::CallTypeName:
      return MessageArg(TypeNameOfArgument(call.args, arg.index));
    case ErrorArg::Source::ObjectText:
      if (!call.map.objectText) break;
      return MessageArg(call.map.objectText(call.self, static_cast<ObjectTextId>(arg.index)));
    case ErrorArg::Source::ArgumentText:
      return MessageArg(
          MessageTextOfArgument(call.args, arg.index, static_cast<ObjectTextId>(arg.id)));
    case ErrorArg::Source::Literal:
    case ErrorArg::Source::None:
      break;
  }
  return MessageArg(WString(arg.text));
}

Result Raise(const CallContext& call, std::int32_t number, WString text, std::int32_t helpContext) {
  call.error.number = number;
  call.error.text = std::move(text);
  call.error.helpContext = helpContext;
  return DISP_E_EXCEPTION;
}

Result RaiseRow(const CallContext& call, const ErrorRow& row) {
  const std::size_t count = row.ArgCount();
  if (count == 0 && row.number == row.textNumber) {
    return Raise(call, row.number, LoadString(row.number), -1);
  }
  std::vector<MessageArg> values;
  values.reserve(count);
  for (std::size_t i = 0; i < count; ++i) values.push_back(ValueOf(row.args[i], call));
  return Raise(call, row.number,
               FormatTableMessage(row.textNumber, std::span<const MessageArg>(values)), 0);
}

/// Calls the member and turns its failure into an error, or into nothing.
Result CallRow(const CallContext& call, Variant& result) {
  if (const ErrorRow* refused = FindNullArgumentRow(call.row.errors, call.args)) {
    return RaiseRow(call, *refused);
  }
  const bool isPut = call.row.kind == CallKind::Put;
  CallFrame frame{call.args, call.row.requiredCount + (isPut ? 1U : 0U), &result, -1};
  Result rc = S_OK;
  try {
    rc = call.row.call(call.self, frame);
  } catch (DispatchException& thrown) {
    return Raise(call, thrown.number, std::move(thrown.text), thrown.helpContext);
  } catch (...) {
    rc = ResultFromCaughtException();
  }
  call.error.code = rc;
  if (!Failed(rc)) return rc;
  if (frame.refusedArgument >= 0) {
    call.error.argument = frame.refusedArgument;
    return rc;
  }
  const ErrorRow row = SelectErrorRow(call.row.errors, rc, call.row.name);
  return row.number == 0 ? S_OK : RaiseRow(call, row);
}

bool TakesCount(const MemberRow& row, std::size_t count) {
  const std::size_t newValue = row.kind == CallKind::Put ? 1 : 0;
  return count >= row.requiredCount + newValue && count <= row.argumentCount + newValue;
}

/// `x.Properties("Id")`: the property gives an object, whose default member takes the arguments.
Result CallDefaultOf(const CallContext& call, std::span<const Variant> args, Variant& result) {
  Variant object;
  const Result rc = CallRow(call, object);
  if (Failed(rc)) return rc;
  if (!object.Is(VT_DISPATCH) || !object.AsObject()) return DISP_E_BADPARAMCOUNT;
  return object.AsObject()->Invoke(kDispIdValue, CallKind::Method | CallKind::Get, args, &result,
                                   &call.error);
}

}  // namespace

void ThrowDispatchError(std::int32_t number, std::u16string_view text) {
  throw DispatchException{number, WString(text), 0};
}

void ThrowDispatchError(std::int32_t number) {
  throw DispatchException{number, LoadString(number), -1};
}

ErrorRow SelectErrorRow(const MemberErrors& errors, Result code, std::u16string_view memberName) {
  for (const ErrorRow& row : errors.rows) {
    if (row.nullArgument < 0 && row.code == code) return row;
  }
  if (errors.standard == Standard::Off) return {};
  const std::u16string_view name = errors.method.empty() ? memberName : errors.method;
  switch (CodeOf(code)) {
    case CodeOf(E_NOTIMPL):
      return errors.notImpl == NotImpl::NotLoaded ? On(code, kTextNotLoaded)
                                                  : On(code, kTextNotImplemented, Literal(name));
    case CodeOf(E_PENDING):
      return On(code, kTextTimedOut, Literal(name));
    case CodeOf(VEX_E_OBJECT_GONE):
      return On(code, kTextObjectGone);
    case CodeOf(E_OUTOFMEMORY):
      return On(code, kTextOutOfMemory);
    default:
      return errors.standard == Standard::All ? On(code, kTextUnknownError) : ErrorRow{};
  }
}

Result InvokeMember(const DispatchMap& map, IDispatch& self, std::int32_t id, CallKind kinds,
                    std::span<const Variant> args, Variant* result, ErrorInfo* error) {
  ErrorInfo ownError;
  if (error) *error = {};
  const MemberRow* row = FindRow(map, id, kinds);
  if (!row) {
    if (result) result->Clear();
    return DISP_E_MEMBERNOTFOUND;
  }
  // A member may lead back into the host, which may let go of the object.
  const Ref<IDispatch> alive = Ref<IDispatch>::Share(&self);
  CallContext call{map, self, *row, args, error ? *error : ownError};
  Variant given;  // filled apart, since the caller's result may be one of the arguments
  Result rc = DISP_E_BADPARAMCOUNT;
  if (TakesCount(*row, args.size())) {
    rc = CallRow(call, given);
  } else if (row->kind == CallKind::Get && row->argumentCount == 0) {
    call.args = {};
    rc = CallDefaultOf(call, args, given);
  }
  if (Failed(rc)) given.Clear();
  if (result) *result = std::move(given);
  return rc;
}

}  // namespace hv::automation
