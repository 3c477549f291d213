// store/model/FilenameParameter.cpp - the parameter text that names a file to the engine.
#include "store/model/FilenameParameter.h"

#include "xml/Escape.h"

namespace hv::vex {

WString FilenameParameter(std::u16string_view path) {
  WString parameter = u"<filename>";
  xml::AppendEscaped(parameter, path, u"&<>");
  parameter += u"</filename>";
  return parameter;
}

}  // namespace hv::vex
