// tests/support/Script.h - whole lines of a script, with variables, and what they show.
#pragma once

#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/CallByName.h"

namespace hv::test {

struct Line {
  std::string line;
  std::string shown;
};

/// Runs lines like these:
///     Set run = RootElements('Cold start').Children(0)
///     run.Name = 'Run ''1'''
///     run.References('Test').Elements.AddReference(GetElementByKey('Campaign:1'))
/// A line begins at a variable or at a member of the object that the script is about. Arguments are
/// texts, numbers, one of the words below or lines themselves. Shown are values, failures as
/// "number text", collections by the names in them as "[a|b]", and other objects by their name.
class Script {
 public:
  explicit Script(IDispatch* object = nullptr) { Set("", Variant::Object(object)); }

  void Set(const std::string& variable, Variant value) { m_variables[variable] = std::move(value); }
  Answer Run(std::string_view line) {
    if (!line.starts_with("Set ")) return Read(line);
    const std::size_t equals = line.find(" = ");
    const std::string variable(line.substr(4, equals - 4));
    line.remove_prefix(equals + 3);
    const Answer answer = Read(line);
    Set(variable, answer.value);
    return answer;
  }
  Ref<IDispatch> Object(std::string_view line) { return Ref<IDispatch>::Share(Run(line).Object()); }
  std::string Show(std::string_view line) { return Shown(Run(line)); }
  void Expect(const std::vector<Line>& lines) {
    for (const Line& row : lines) EXPECT_EQ(row.shown, Show(row.line)) << row.line;
  }

  static std::string Shown(const Answer& answer) {
    IDispatch* const object = Failed(answer.rc) ? nullptr : answer.Object();
    if (!object) return answer.Shown();
    const Answer walk = Get(object, u"_NewEnum");
    if (walk.rc == DISP_E_UNKNOWNNAME) {
      const Answer name = Get(object, u"Name");
      return name.rc == DISP_E_UNKNOWNNAME ? "object" : name.Shown();
    }
    if (!walk.value.Is(VT_UNKNOWN)) return walk.Shown();
    std::string names;
    Variant item;
    for (const auto items = QueryRef<IVariantIterator>(walk.value.AsUnknown());
         items->Next(&item) == S_OK;) {
      names += (names.empty() ? "" : "|") + Get(item.AsObject(), u"Name").Text();
    }
    return "[" + names + "]";
  }

 private:
  static std::optional<Variant> Word(const std::string& word) {
    static const std::map<std::string, Variant> kWords{
        {"null", Variant::Null()},     {"missing", Variant::Missing()},
        {"empty", Variant()},          {"none", Variant::Object(nullptr)},
        {"true", Variant::Bool(true)}, {"false", Variant::Bool(false)},
        {"array", Variant::Array({})}};
    const auto found = kWords.find(word);
    return found == kWords.end() ? std::nullopt : std::optional(found->second);
  }
  static Variant Text(std::string_view& rest) {
    std::string text;
    for (rest.remove_prefix(1); !rest.starts_with('\'') || rest.starts_with("''");) {
      text += rest.front();
      rest.remove_prefix(rest.starts_with("''") ? 2 : 1);
    }
    rest.remove_prefix(1);
    return Variant::Text(cor::FromUtf8(text));
  }
  static Variant Number(std::string_view& rest) {
    const std::string digits(rest.substr(0, rest.find_first_of(",) ")));
    rest.remove_prefix(digits.size());
    return digits.find_first_of(".e") == digits.npos ? Variant::I4(std::stoi(digits))
                                                     : Variant::R8(std::stod(digits));
  }
  /// A value, or a member after the other.
  Answer Read(std::string_view& rest) {
    Answer answer;
    if (rest.starts_with('\'')) return {S_OK, Text(rest), {}};
    if (rest.find_first_of("-0123456789") == 0) return {S_OK, Number(rest), {}};
    std::string name = Name(rest);
    if (const auto word = Word(name)) return {S_OK, *word, {}};
    const bool isVariable = m_variables.contains(name);
    answer.value = m_variables.at(isVariable ? name : "");
    if (isVariable) name.clear();
    while (true) {
      std::vector<Variant> args;
      for (bool isFirst = true; rest.starts_with(isFirst ? '(' : ','); isFirst = false) {
        rest.remove_prefix(1);
        Answer arg = Read(rest);
        if (Failed(arg.rc)) return arg;
        args.push_back(std::move(arg.value));
      }
      if (!args.empty()) rest.remove_prefix(1);
      const Ref<IDispatch> object = Ref<IDispatch>::Share(answer.Object());
      if (rest.starts_with(" = ")) {
        rest.remove_prefix(3);
        Answer value = Read(rest);
        if (Failed(value.rc)) return value;
        args.push_back(std::move(value.value));
        return Call(object.Get(), cor::FromUtf8(name), CallKind::Put, std::move(args));
      }
      if (!name.empty()) {
        answer = Call(object.Get(), cor::FromUtf8(name), CallKind::Method | CallKind::Get,
                      std::move(args));
      } else if (!args.empty()) {
        answer = Index(object.Get(), std::move(args.front()));
      }
      if (Failed(answer.rc) || !rest.starts_with('.')) return answer;
      rest.remove_prefix(1);
      name = Name(rest);
    }
  }
  static std::string Name(std::string_view& rest) {
    const std::string name(rest.substr(0, rest.find_first_of(".(,) ")));
    rest.remove_prefix(name.size());
    return name;
  }

  std::map<std::string, Variant> m_variables;
};

/// A line about an object, and rows of them.
inline Answer Eval(IDispatch* object, std::string_view line) { return Script(object).Run(line); }
inline void ExpectShown(IDispatch* object, const std::vector<Line>& lines) {
  Script(object).Expect(lines);
}

/// \name Messages that many members raise
/// @{
inline const std::string kUnknown = "250 Unknown error.";
inline const std::string kGone = "323 The object is no longer valid.";
inline const std::string kProtected = "365 The data store is write protected.";
inline const std::string kForeign =
    "335 The specified element is not an element of the connected data store.";
inline const std::string kNoName =
    "360 The name of an Element<DataStore> must not be an empty string.";
inline const std::string kNoKey =
    "214 The argument passed to Item must be either a string or an integer.";
inline const std::string kNotBase = "343 This property is no base property.";
inline std::string NoMember(const std::string& key) {
  return "215 The index " + key + " does not correspond to a member of the collection.";
}
inline std::string OutOfRange(const std::string& index, const std::string& property = "Values") {
  return "211 The index " + index + " is out of range for the property " + property + ".";
}
/// @}

}  // namespace hv::test
