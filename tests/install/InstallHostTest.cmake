# Takes BUILD, SOURCE, COMPILER, SANITIZE, COVERAGE and DATA; see CMakeLists.txt.
set(work ${BUILD}/tests/install)
set(flags "")
if(SANITIZE)
  set(flags "-fsanitize=address,undefined")
elseif(COVERAGE)
  set(flags "--coverage")
endif()
# An earlier run leaves nothing behind that could stand in for what isn't installed any more.
file(REMOVE_RECURSE ${work}/prefix ${work}/host)
file(MAKE_DIRECTORY ${work}/config)

function(run)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE output
                  RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "${ARGN}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${work}/prefix --component library)
run(${CMAKE_COMMAND} -S ${SOURCE}/host -B ${work}/host -D CMAKE_CXX_COMPILER=${COMPILER}
    -D CMAKE_PREFIX_PATH=${work}/prefix -D CMAKE_CXX_FLAGS=${flags})
run(${CMAKE_COMMAND} --build ${work}/host)
run(${CMAKE_COMMAND} -E env STOREFABRIC_CONFIG=${work}/config ${work}/host/host ${DATA})
if(NOT output STREQUAL "bench\n")
  message(FATAL_ERROR "the host printed: ${output}")
endif()
