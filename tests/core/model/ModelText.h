// tests/core/model/ModelText.h - models from short texts, and short texts from models.
#pragma once

#include <sstream>
#include <string>

#include "core/model/BaseModel.h"
#include "core/model/ModelBuilder.h"

namespace hv::vex::engine {

inline std::u16string Wide(std::string_view text) { return {text.begin(), text.end()}; }
inline std::string Narrow(std::u16string_view text) {
  std::string narrow;
  for (const char16_t unit : text) narrow += unit < 0x80 ? static_cast<char>(unit) : '?';
  return narrow;
}

/// The value of "key=value" among the words of a line, or nothing.
inline std::optional<std::string> WordOf(std::string_view line, std::string_view key) {
  std::istringstream words{std::string(line)};
  for (std::string word; words >> word;) {
    if (word.starts_with(key) && word.size() > key.size() && word[key.size()] == '=') {
      return word.substr(key.size() + 1);
    }
  }
  return std::nullopt;
}

inline std::optional<bool> FlagOf(std::string_view line, std::string_view key) {
  const std::optional<std::string> word = WordOf(line, key);
  return word ? std::optional<bool>(*word == "true") : std::nullopt;
}

inline std::optional<std::int32_t> RangeOf(std::string_view line, std::string_view key) {
  const std::optional<std::string> word = WordOf(line, key);
  if (!word) return std::nullopt;
  return *word == "Many" ? kMany : std::stoi(*word);
}

/// Lines: "element NAME BASE", then its members
///   "attr NAME base= type= obligatory= unique= autogenerate= enum=" and
///   "rel NAME to= base= min= max= inverse=";
/// "enum NAME ITEM ITEM" gives the items the numbers 0, 1, 2.
inline void Declare(ModelBuilder& builder, const std::string& text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string kind, name, rest;
    words >> kind >> name;
    const auto wide = [&](const char* key) { return Wide(WordOf(line, key).value_or("")); };
    if (kind == "element") {
      words >> rest;
      builder.BeginEntity(Wide(name), Wide(rest));
    } else if (kind == "attr") {
      AttributeSpec spec;
      spec.name = Wide(name);
      spec.baseAttribute = wide("base");
      if (const auto type = WordOf(line, "type")) spec.type = ParseTypeName(Wide(*type));
      spec.obligatory = FlagOf(line, "obligatory");
      spec.unique = FlagOf(line, "unique");
      spec.autogenerate = FlagOf(line, "autogenerate");
      spec.enumeration = wide("enum");
      builder.AddAttribute(std::move(spec));
    } else if (kind == "rel") {
      RelationSpec spec;
      spec.name = Wide(name);
      spec.refTo = wide("to");
      spec.baseRelation = wide("base");
      spec.minOccurs = RangeOf(line, "min");
      spec.maxOccurs = RangeOf(line, "max");
      spec.inverseName = wide("inverse");
      builder.AddRelation(std::move(spec));
    } else if (kind == "enum") {
      Enumeration enumeration{Wide(name), false, {}};
      while (words >> rest) {
        enumeration.items.push_back(
            {Wide(rest), static_cast<std::int64_t>(enumeration.items.size())});
      }
      builder.AddEnumeration(std::move(enumeration));
    }
  }
}

inline const char* NameOf(Relationship relationship) {
  constexpr const char* kNames[] = {"none", "father", "child", "to", "from", "rel"};
  return kNames[static_cast<std::size_t>(relationship)];
}

/// "name[base] target 0..1 inverse father", with " made" behind a relation that nobody declared.
inline std::string Describe(const Model& model, const Relation& relation) {
  const Entity& target = model.At(relation.target);
  std::string text = Narrow(relation.name);
  if (!relation.baseName.empty()) text += "[" + Narrow(relation.baseName) + "]";
  text += " " + Narrow(target.name) + " " + std::to_string(relation.minOccurs) + "..";
  text += relation.maxOccurs == kMany ? "N" : std::to_string(relation.maxOccurs);
  text += " ";
  text += relation.inverse == kNone
              ? "-"
              : Narrow(target.relations[static_cast<std::size_t>(relation.inverse)].name);
  text += std::string(" ") + NameOf(relation.relationship) + (relation.isDeclared ? "" : " made");
  return text;
}

/// All relations of an entity, one a line.
inline std::string DescribeRelations(const Model& model, std::u16string_view entity) {
  const Entity* found = model.Find(entity);
  if (found == nullptr) return "no such entity";
  std::string text;
  for (const Relation& relation : found->relations) text += Describe(model, relation) + "\n";
  return text;
}

/// All problems, one a line, errors with a "!" before them.
inline std::string DescribeProblems(const ModelBuilder& builder) {
  std::string text;
  for (const ModelProblem& problem : builder.Problems()) {
    text += (problem.isError ? "!" : "") + Narrow(problem.text) + "\n";
  }
  return text;
}

}  // namespace hv::vex::engine
