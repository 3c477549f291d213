// tests/core/model/ModelText.h - models from short texts, and short texts from models.
#pragma once

#include <map>
#include <optional>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include <storefabric/WString.h>

#include "core/model/ModelBuilder.h"

namespace hv::vex::engine {

inline std::u16string Wide(std::string_view text) { return cor::FromUtf8(text).str(); }

/// Lines: "element NAME BASE", then its members
///   "attr NAME base= type= obligatory= unique= autogenerate= enum= unit=" and
///   "rel NAME to= base= min= max= inverse=";
/// "enum NAME ITEM ITEM=7" gives the items their numbers, or 0, 1, 2.
inline void Declare(ModelBuilder& builder, const std::string& text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string kind, name, last;
    words >> kind >> name;
    Enumeration enumeration{Wide(name), false, {}};
    std::map<std::string, std::string> told;
    while (words >> last) {
      const std::size_t at = last.find('=');
      if (at != last.npos) told[last.substr(0, at)] = last.substr(at + 1);
      if (kind != "enum") continue;
      const auto number = static_cast<std::int64_t>(enumeration.items.size());
      enumeration.items.push_back(
          {Wide(last.substr(0, at)), at == last.npos ? number : std::stoll(last.substr(at + 1))});
    }
    const auto flag = [&](const char* key) {
      return told.contains(key) ? std::optional(told[key] == "true") : std::nullopt;
    };
    const auto occurs = [&](const char* key) {
      if (!told.contains(key)) return std::optional<std::int32_t>();
      return std::optional(told[key] == "Many" ? kMany : std::stoi(told[key]));
    };
    if (kind == "element") {
      builder.BeginEntity(Wide(name), Wide(last));
    } else if (kind == "attr") {
      builder.AddAttribute({.name = Wide(name),
                            .baseAttribute = Wide(told["base"]),
                            .type = ParseTypeName(Wide(told["type"])),
                            .obligatory = flag("obligatory"),
                            .unique = flag("unique"),
                            .autogenerate = flag("autogenerate"),
                            .enumeration = Wide(told["enum"]),
                            .unit = told["unit"].empty() ? 0 : std::stoi(told["unit"])});
    } else if (kind == "rel") {
      builder.AddRelation({.name = Wide(name),
                           .refTo = Wide(told["to"]),
                           .baseRelation = Wide(told["base"]),
                           .minOccurs = occurs("min"),
                           .maxOccurs = occurs("max"),
                           .inverseName = Wide(told["inverse"])});
    } else if (kind == "enum") {
      builder.AddEnumeration(std::move(enumeration));
    }
  }
}

/// All problems, one a line, errors with a "!" before them.
inline std::string DescribeProblems(const ModelBuilder& builder) {
  std::string text;
  for (const ModelProblem& problem : builder.Problems()) {
    text += (problem.isError ? "!" : "") + cor::ToUtf8(problem.text) + "\n";
  }
  return text;
}

/// The model of such a text; an error fails the test.
inline std::shared_ptr<const Model> Built(const std::string& text,
                                          std::u16string_view version = u"asam31",
                                          std::u16string_view part = {}) {
  ModelBuilder builder(version);
  Declare(builder, text);
  if (!part.empty()) builder.AddPart(part);
  auto model = builder.Build();
  EXPECT_TRUE(model) << DescribeProblems(builder);
  return model;
}

}  // namespace hv::vex::engine
