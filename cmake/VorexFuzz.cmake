# Fuzz targets: each tests/fuzz/<name>_fuzz.cpp is a program of its own; its inputs are in
# tests/fuzz/corpus/<name>/. With VOREX_FUZZING, libFuzzer drives it, and CTest runs it for
# VOREX_FUZZ_SECONDS; otherwise CTest replays the inputs once with replay_main.cpp.

file(GLOB fuzz_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/fuzz/*_fuzz.cpp")
foreach(source IN LISTS fuzz_sources)
  cmake_path(GET source STEM target)
  string(REGEX REPLACE "_fuzz$" "" name "${target}")
  set(corpus "${PROJECT_SOURCE_DIR}/tests/fuzz/corpus/${name}")

  add_executable(${target} "${source}")
  vorex_configure_target(${target})
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${target} PRIVATE vorex_cli)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/fuzz")
  if(VOREX_FUZZING)
    target_link_options(${target} PRIVATE -fsanitize=fuzzer)
    # New inputs go to the first folder, so the second, in the source tree, stays as it is.
    set(found "${PROJECT_BINARY_DIR}/fuzz/found/${name}")
    file(MAKE_DIRECTORY "${found}")
    add_test(NAME fuzz.${name} WORKING_DIRECTORY "${PROJECT_BINARY_DIR}/fuzz"
      COMMAND ${target} -max_total_time=${VOREX_FUZZ_SECONDS} -timeout=10 -rss_limit_mb=4096
        -print_final_stats=1 "${found}" "${corpus}")
  else()
    target_sources(${target} PRIVATE tests/fuzz/replay_main.cpp)
    add_test(NAME fuzz_replay.${name} COMMAND ${target} "${corpus}")
    set_tests_properties(fuzz_replay.${name} PROPERTIES TIMEOUT 300)
  endif()
endforeach()
