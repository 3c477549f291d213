// xml/ConnectParams.h - the connection parameters of a store: tags side by side in one text.
// The form is told in docs/formats/connect-params.md.
#pragma once

#include <string_view>

#include <storefabric/WString.h>

namespace hv::xml {

/// A text of tags with nothing between them: "<filename>a.atfx</filename><user>x</user>".
using ConnectParams = WString;

/// Adds a tag at the end; one of the same name that is there already stays. The value is written as
/// it stands.
/// \param attributes  what follows the name in the start tag, may be empty
void AppendTag(ConnectParams& parameters, std::u16string_view tagName, std::u16string_view value,
               std::u16string_view attributes = {});

/// The same for a text without markup of its own: "&", "<" and ">" are escaped.
void AppendTextTag(ConnectParams& parameters, std::u16string_view tagName,
                   std::u16string_view text);

/// Adds a file name, which is a text, under the tag "filename".
void AppendFilenameTag(ConnectParams& parameters, std::u16string_view fileName);

/// The parameters without a password that isn't meant to be kept: unless the attribute `s` of the
/// tag "pwd" is a number other than 0, the tag loses its content, and its attribute `e`.
[[nodiscard]] WString StripPassword(const ConnectParams& parameters);

}  // namespace hv::xml
