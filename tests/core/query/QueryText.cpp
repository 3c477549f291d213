#include "QueryText.h"

#include <sstream>

#include "storefabric/WString.h"

namespace hv::vex::engine::test {
namespace {

std::string Utf8(std::u16string_view text) { return cor::ToUtf8(text); }

const char* NameOf(QueryOp op) {
  constexpr const char* kNames[] = {"AND", "OR", "=", "!=", "<", "<=", ">", ">="};
  return kNames[static_cast<std::size_t>(op)];
}

std::string Quote(std::u16string_view text, bool wildcards, bool ignoreCase) {
  return "'" + Utf8(text) + "'" + (wildcards ? "w" : "") + (ignoreCase ? "i" : "");
}

std::string NumberText(const BoundConstant& constant) {
  std::ostringstream out;
  out.precision(17);
  if (constant.isReal) {
    out << "r" << constant.real;
  } else {
    out << constant.integer;
  }
  return out.str();
}

template <class Node, class Tell>
std::string Join(const Node& node, const Tell& tell) {
  std::string text = std::string(NameOf(node.op)) + "(";
  for (const Node& child : node.children) {
    if (&child != &node.children.front()) text += ", ";
    text += tell(child);
  }
  return text + ")";
}

std::string DescribeInstanceAttribute(const BoundNode& node) {
  std::string text = "{" + Utf8(node.attributeName);
  if (!node.anyValue) {
    const BoundConstant& constant = node.constant;
    text += std::string(" ") + NameOf(node.op) + " " +
            Quote(constant.text, constant.wildcards, constant.ignoreCase);
    if (constant.isNumber) text += " number " + NumberText(constant);
    if (!constant.date.empty()) text += " date " + Utf8(constant.date);
  }
  return text + "}";
}

}  // namespace

std::u16string Text(std::u16string_view body, std::u16string_view entity, std::u16string_view limit,
                    std::u16string_view head) {
  std::u16string text =
      u"<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"no\" ?>\n<query>\n";
  text += head;
  text += u"<entity name=\"";
  text += entity;
  text += u"\" >\n<expression";
  text += limit;
  text += u">\n";
  text += body;
  text += u"</expression></entity></query>";
  return text;
}

std::u16string Function(std::u16string_view name, std::u16string_view identifier,
                        std::u16string_view constant, std::u16string_view attributes) {
  std::u16string body = u"<q:identifier>";
  body += identifier;
  body += u"</q:identifier>\n<q:constant";
  body += attributes;
  body += u">";
  body += constant;
  body += u"</q:constant>\n";
  return Function(name, body);
}

std::u16string Function(std::u16string_view name, std::u16string_view body) {
  std::u16string text = u"<q:function name=\"";
  text += name;
  text += u"\">\n";
  text += body;
  text += u"</q:function>\n";
  return text;
}

std::string Describe(const ParsedNode& node) {
  if (node.IsLogic()) return Join(node, [](const ParsedNode& child) { return Describe(child); });
  return Utf8(node.identifier) + " " + NameOf(node.op) + " " +
         Quote(node.constant.text, node.constant.wildcards, node.constant.ignoreCase);
}

std::string Describe(const ResolvedPath& path, const Model& model) {
  std::string text;
  for (const PathStep& step : path.steps) {
    const auto index = static_cast<std::size_t>(step.relation);
    text += Utf8(model.At(step.source).relations[index].name) + ".";
  }
  if (path.attribute == kNone) return text;
  const auto index = static_cast<std::size_t>(path.attribute);
  return text + Utf8(model.At(path.target).attributes[index].name);
}

std::string Describe(const BoundNode& node, const Model& model) {
  if (node.kind == BoundNode::Kind::Logic) {
    return Join(node, [&](const BoundNode& child) { return Describe(child, model); });
  }
  const std::string path = Describe(node.path, model);
  if (node.kind == BoundNode::Kind::InstanceAttribute) {
    return path + DescribeInstanceAttribute(node);
  }
  const auto index = static_cast<std::size_t>(node.path.attribute);
  const Attribute& attribute = model.At(node.path.target).attributes[index];
  const BoundConstant& constant = node.constant;
  std::string value;
  if (constant.isNever) {
    value = "never";
  } else if (StorageKindOf(attribute.type) == StorageKind::Text) {
    value = Quote(constant.text, constant.wildcards, constant.ignoreCase);
  } else {
    value = NumberText(constant);
  }
  return path + " " + NameOf(node.op) + " " + value;
}

}  // namespace hv::vex::engine::test
