# Puts a file into the program as a constant array.
#
#   include(EmbedText)
#   hv_embed_text(TARGET INPUT file SYMBOL kName [NAMESPACE ns])
#
# gives TARGET a header "embedded/kName.h" with
#   inline constexpr char kName[] = {...};   // the bytes of the file, no terminator
#   inline constexpr std::size_t kNameSize;
# which is made anew when the file changes. Character constants rather than a string literal: a
# literal has a length limit, and the array can still be read in a static_assert.

if(CMAKE_SCRIPT_MODE_FILE)
  file(READ "${INPUT}" hex HEX)
  string(LENGTH "${hex}" hexLength)
  math(EXPR size "${hexLength} / 2")
  if(size EQUAL 0)
    message(FATAL_ERROR "${INPUT} is empty or can't be read")
  endif()
  # Sixteen bytes a line, so that the file can be looked at.
  string(REPEAT "[0-9a-f]" 32 sixteenBytes)
  string(REGEX REPLACE "(${sixteenBytes})" "\\1\n" hex "${hex}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," hex "${hex}")
  get_filename_component(name "${INPUT}" NAME)
  file(WRITE "${OUTPUT}.new"
"// The content of ${name}, made by the build.
#pragma once

#include <cstddef>

namespace ${NAMESPACE} {
inline constexpr std::size_t ${SYMBOL}Size = ${size};
inline constexpr char ${SYMBOL}[] = {
${hex}
};
}  // namespace ${NAMESPACE}
")
  file(RENAME "${OUTPUT}.new" "${OUTPUT}")
  return()
endif()

set(HV_EMBED_TEXT_SCRIPT ${CMAKE_CURRENT_LIST_FILE})

function(hv_embed_text target)
  cmake_parse_arguments(A "" "INPUT;SYMBOL;NAMESPACE" "" ${ARGN})
  if(NOT A_NAMESPACE)
    set(A_NAMESPACE hv::embedded)
  endif()
  get_filename_component(input ${A_INPUT} ABSOLUTE BASE_DIR ${CMAKE_CURRENT_SOURCE_DIR})
  set(root ${CMAKE_CURRENT_BINARY_DIR}/${target}_embedded)
  set(output ${root}/embedded/${A_SYMBOL}.h)
  file(MAKE_DIRECTORY ${root}/embedded)
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DINPUT=${input} -DOUTPUT=${output} -DSYMBOL=${A_SYMBOL}
            -DNAMESPACE=${A_NAMESPACE} -P ${HV_EMBED_TEXT_SCRIPT}
    DEPENDS ${input} ${HV_EMBED_TEXT_SCRIPT}
    COMMENT "Embedding ${A_SYMBOL}" VERBATIM)
  target_sources(${target} PRIVATE ${output})
  target_include_directories(${target} PRIVATE ${root})
endfunction()
