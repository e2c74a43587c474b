# Installs the library of BUILD_DIR to a prefix of its own, then configures, builds and runs the project in
# EXAMPLE_DIR against it. Needs CXX_COMPILER, CXX_FLAGS and GENERATOR.

set(work "${BUILD_DIR}/installed_library_example")
file(REMOVE_RECURSE "${work}")

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${work}/prefix" --component development)
run("${CMAKE_COMMAND}" -S "${EXAMPLE_DIR}" -B "${work}/build" -G "${GENERATOR}"
  "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}" "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" "-DCMAKE_PREFIX_PATH=${work}/prefix")
run("${CMAKE_COMMAND}" --build "${work}/build")
run("${work}/build/example_host")
run("${work}/build/run_in_room" "${EXAMPLE_DIR}/../radiographic_unit.xml")
execute_process(COMMAND "${work}/build/run_in_room" "${EXAMPLE_DIR}/../radiographic_unit.xml"
  "${EXAMPLE_DIR}/../rooms/kvp_high.json" RESULT_VARIABLE failed OUTPUT_VARIABLE printed)
if(NOT failed EQUAL 1 OR NOT printed MATCHES "Fail")
  message(FATAL_ERROR "a room with too much voltage ended with ${failed}; expected 1 and a failure:\n${printed}")
endif()
