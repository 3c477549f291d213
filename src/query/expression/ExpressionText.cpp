// query/expression/ExpressionText.cpp - the parts that the text of a query expression is made of.
#include "query/expression/ExpressionText.h"

#include "xml/Escape.h"

#include <string>

namespace hv::vex {

namespace {

std::u16string_view ConstantTag(ConstantKind kind) {
  switch (kind) {
    case ConstantKind::Wildcards:
      return u"<q:constant wildcards=\"?*\" caseinsensitive=\"yes\">";
    case ConstantKind::NoCase:
      return u"<q:constant caseinsensitive=\"yes\">";
    case ConstantKind::Plain:
      break;
  }
  return u"<q:constant>";
}

}  // namespace

void AppendHead(WString& text, std::u16string_view returnType, std::u16string_view uri,
                std::int32_t limit, std::u16string_view freeText) {
  text += u"<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"no\" ?>\n<query>\n";
  if (!freeText.empty()) {
    text += u"<ftsexpression>";
    xml::AppendEscaped(text, freeText);
    text += u"</ftsexpression>\n";
  }
  text += u"<entity name=\"";
  text += returnType;
  text += u"\"";
  if (!uri.empty()) {
    text += u" uri=";
    text += uri;
  }
  text += u" >\n<expression";
  if (limit != 0) {
    text += u" limit=\"";
    text += cor::FromUtf8(std::to_string(limit));
    text += u"\"";
  }
  text += u">\n";
}

void AppendTail(WString& text) { text += u"</expression></entity></query>"; }

void OpenFunction(WString& text, std::u16string_view name) {
  text += u"<q:function name=\"";
  xml::AppendEscaped(text, name);
  text += u"\">\n";
}

void CloseFunction(WString& text) { text += u"</q:function>\n"; }

void AppendComparison(WString& text, std::u16string_view op, std::u16string_view identifier,
                      ConstantKind kind, std::u16string_view constant) {
  OpenFunction(text, op);
  text += u"<q:identifier>";
  xml::AppendEscaped(text, identifier);
  text += u"</q:identifier>\n";
  text += ConstantTag(kind);
  xml::AppendEscaped(text, constant);
  text += u"</q:constant>\n";
  CloseFunction(text);
}

}  // namespace hv::vex
