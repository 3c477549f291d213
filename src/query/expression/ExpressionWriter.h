// query/expression/ExpressionWriter.h - writes conditions and their logic as query functions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string_view>

#include <storefabric/Result.h>
#include <storefabric/WString.h>

#include "query/conditions/IConditionCollImpl.h"
#include "query/expression/ExpressionText.h"
#include "query/expression/IIdentifierMapper.h"
#include "query/expression/IStoreConfigHelper.h"
#include "query/logic/LogicParser.h"
#include "query/values/RelativeRange.h"

namespace hv::vex {

/// Knows the ways through a model.
class IEntityPaths {
 public:
  /// The dotted path of references; empty from an entity to itself, and where there is no way.
  [[nodiscard]] virtual WString PathBetween(std::u16string_view from, std::u16string_view to) = 0;

 protected:
  ~IEntityPaths() = default;
};

/// What an expression is made of. All of it is borrowed.
struct ExpressionSource {
  easyImpl::IConditionCollImpl& conditions;
  IStoreConfigHelper& config;
  IEntityPaths& paths;
  std::u16string_view returnType;
  /// Whether properties that the model doesn't know are instance attributes.
  bool isBelowElement = false;
  IIdentifierMapper* mapper = nullptr;  ///< null: identifiers stay as they are
  SystemTime now = LocalNow();          ///< what relative ranges are relative to
};

/// Writes the functions of one expression. Texts are added at the end of `body`, which is of no use
/// after a failure. What is found out of an entity is kept, so a writer serves one expression.
class ExpressionWriter final {
 public:
  explicit ExpressionWriter(const ExpressionSource& source) : m_source(source) {}

  /// Walks the logic: everything between head and tail.
  /// \param failedCondition  receives the number of the condition that failed
  /// \return S_OK; VEX_E_BAD_LOGIC; E_INVALIDARG for a condition that isn't there; see
  ///         `WriteCondition`
  Result WriteLogic(WString* body, std::uint32_t* failedCondition);
  /// A group in parentheses with all groups inside it.
  /// \param position  of the open token; receives the place behind the close
  /// \return see `WriteLogic`
  Result WriteGroup(std::span<const LogicToken> tokens, std::size_t* position, WString* body,
                    std::uint32_t* failedCondition);
  /// \param isInOr  whether the functions will stand in a function OR
  /// \return S_OK; VEX_E_INVALID_PROPERTY if there is a mapper below an element;
  ///         VEX_E_VALUE_TYPE for a date property with a value that isn't one;
  ///         VEX_E_VALUE_TOO_LONG
  Result WriteCondition(easyImpl::IConditionImpl& condition, bool isInOr, WString* body);
  /// Restricts a body, whose outermost function isn't closed yet, to what has a name, if the mapper
  /// asks for that.
  static void WriteFilter(IIdentifierMapper* mapper, bool isInOr, WString* body);

 private:
  /// What all functions of one condition have in common.
  struct Target {
    WString identifier;
    std::u16string_view prefix;    ///< with its point
    std::u16string_view property;  ///< the internal name
    bool isModelProperty = true;
    bool isText = false;
    bool isInOr = false;
    [[nodiscard]] ConstantKind Kind() const {
      return isText ? ConstantKind::Wildcards : ConstantKind::Plain;
    }
  };
  Result WriteNumbered(std::int32_t number, bool isInOr, WString* body,
                       std::uint32_t* failedCondition);
  Result WriteValues(std::u16string_view op, std::u16string_view valueText, const Target& target,
                     WString* body);
  Result WriteList(std::u16string_view op, const WString& valueText, const Target& target,
                   WString* body);
  Result WriteDate(easyImpl::IConditionImpl& condition, std::u16string_view op,
                   const Target& target, WString* body);
  static void WriteRange(const WString& from, const WString& to, const Target& target,
                         WString* body);
  /// One function, or the pair that stands for an instance attribute.
  static void WriteValue(std::u16string_view op, std::u16string_view value, ConstantKind kind,
                         const Target& target, WString* body);
  const WString& PrefixOf(std::u16string_view type);

  ExpressionSource m_source;
  std::map<WString, WString, cor::ExactLess> m_prefixes;
};

}  // namespace hv::vex
