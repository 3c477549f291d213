// store/model/FilenameParameter.cpp - the parameter text that names a file to the engine.
#include "store/model/FilenameParameter.h"

namespace hv::vex {

WString FilenameParameter(std::u16string_view path) {
  WString parameter = u"<filename>";
  for (const char16_t unit : path) {
    switch (unit) {
      case u'&':
        parameter += u"&amp;";
        break;
      case u'<':
        parameter += u"&lt;";
        break;
      case u'>':
        parameter += u"&gt;";
        break;
      default:
        parameter += unit;
    }
  }
  parameter += u"</filename>";
  return parameter;
}

}  // namespace hv::vex
