#include "QueryText.h"

#include <sstream>

namespace hv::vex::engine::test {
namespace {

const char* NameOf(QueryOp op) {
  constexpr const char* kNames[] = {"AND", "OR", "=", "!=", "<", "<=", ">", ">="};
  return kNames[static_cast<std::size_t>(op)];
}

template <class Constant>
std::string Quote(const Constant& constant) {
  return "'" + cor::ToUtf8(constant.text) + "'" + (constant.wildcards ? "w" : "") +
         (constant.ignoreCase ? "i" : "");
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
  std::string text = "{" + cor::ToUtf8(node.attributeName);
  if (!node.anyValue) {
    const BoundConstant& constant = node.constant;
    text += std::string(" ") + NameOf(node.op) + " " + Quote(constant);
    if (constant.isNumber) text += " number " + NumberText(constant);
    if (!constant.date.empty()) text += " date " + cor::ToUtf8(constant.date);
  }
  return text + "}";
}

}  // namespace

std::u16string Text(const std::u16string& body, const std::u16string& entity,
                    const std::u16string& limit) {
  return u"<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"no\" ?>\n<query>\n<entity "
         u"name=\"" +
         entity + u"\" >\n<expression" + limit + u">\n" + body + u"</expression></entity></query>";
}

std::u16string Function(const std::u16string& name, const std::u16string& identifier,
                        const std::u16string& constant, const std::u16string& attributes) {
  return Function(name, u"<q:identifier>" + identifier + u"</q:identifier>\n<q:constant" +
                            attributes + u">" + constant + u"</q:constant>\n");
}

std::u16string Function(const std::u16string& name, const std::u16string& body) {
  return u"<q:function name=\"" + name + u"\">\n" + body + u"</q:function>\n";
}

std::string Describe(const ParsedNode& node) {
  if (node.IsLogic()) return Join(node, [](const ParsedNode& child) { return Describe(child); });
  return cor::ToUtf8(node.identifier) + " " + NameOf(node.op) + " " + Quote(node.constant);
}

std::string Describe(const ResolvedPath& path, const Model& model) {
  std::string text;
  for (const PathStep& step : path.steps) {
    const auto index = static_cast<std::size_t>(step.relation);
    text += cor::ToUtf8(model.At(step.source).relations[index].name) + ".";
  }
  if (path.attribute == kNone) return text;
  const auto index = static_cast<std::size_t>(path.attribute);
  return text + cor::ToUtf8(model.At(path.target).attributes[index].name);
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
    value = Quote(constant);
  } else {
    value = NumberText(constant);
  }
  return path + " " + NameOf(node.op) + " " + value;
}

}  // namespace hv::vex::engine::test
