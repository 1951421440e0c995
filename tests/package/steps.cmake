# Steps that the package tests share. Each stops the test when it fails.
function(step)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    list(JOIN ARGV " " command)
    message(FATAL_ERROR "failed (${status}): ${command}")
  endif()
endfunction()

# configure_and_build(<source> <build> [cache settings...])
function(configure_and_build source build)
  step("${CMAKE_COMMAND}" -S "${source}" -B "${build}" -G "${GENERATOR}"
    "-DCMAKE_BUILD_TYPE=${BUILD_TYPE}"
    "-DCMAKE_CXX_COMPILER=${COMPILER}"
    "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}"
    "-DCMAKE_CXX_FLAGS=${FLAGS}"
    "-DCMAKE_CXX_FLAGS_DEBUG=${DEBUG_FLAGS}"
    "-DTAVO_SERVER_KEYS_FILE=${KEYS_FILE}"
    --no-warn-unused-cli
    ${ARGN})
  step("${CMAKE_COMMAND}" --build "${build}" --config "${BUILD_TYPE}")
endfunction()

function(install build)
  file(REMOVE_RECURSE "${PREFIX}")
  step("${CMAKE_COMMAND}" --install "${build}" --config "${BUILD_TYPE}" --prefix "${PREFIX}")
endfunction()

if(KIND STREQUAL "shared")
  set(BUILD_SHARED_LIBS ON)
else()
  set(BUILD_SHARED_LIBS OFF)
endif()
