# Tests, benchmarks, fuzz replays, the include ranks, the header check and the stand-alone example.

find_package(GTest QUIET)
find_package(benchmark QUIET)
if(VOREX_BUILD_TESTS STREQUAL "AUTO")
  if(NOT GTest_FOUND OR NOT benchmark_FOUND)
    message(STATUS "Tests left out: GoogleTest or Google Benchmark is not installed")
    return()
  endif()
elseif(NOT GTest_FOUND OR NOT benchmark_FOUND)
  message(FATAL_ERROR "Tests need libgtest-dev, libgmock-dev and libbenchmark-dev")
endif()

enable_testing()

# One program of all tests.
file(GLOB_RECURSE test_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/*_test.cpp")
list(FILTER test_sources EXCLUDE REGEX "/tests/fuzz/")
set(VOREX_TEST_SCRATCH_DIR "${PROJECT_BINARY_DIR}/test_scratch")
file(MAKE_DIRECTORY "${VOREX_TEST_SCRATCH_DIR}")
configure_file(cmake/test_paths.h.in "${PROJECT_BINARY_DIR}/generated_tests/test_paths.h" @ONLY)

add_executable(vorex_tests ${test_sources})
vorex_configure_target(vorex_tests)
target_include_directories(vorex_tests PRIVATE
  "${PROJECT_SOURCE_DIR}/tests" "${PROJECT_BINARY_DIR}/generated_tests")
target_link_libraries(vorex_tests PRIVATE vorex_cli GTest::gmock_main GTest::gmock GTest::gtest)
target_precompile_headers(vorex_tests PRIVATE ${VOREX_STANDARD_HEADERS} <gmock/gmock.h> <gtest/gtest.h>)
add_dependencies(vorex_tests vorex vorex_pdf)

# A module of another version, which the program must not use.
add_library(vorex_pdf_of_another_version MODULE tests/support/pdf_of_another_version.cpp)
vorex_configure_target(vorex_pdf_of_another_version)
set_target_properties(vorex_pdf_of_another_version PROPERTIES PREFIX ""
  LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/test_modules")
add_dependencies(vorex_tests vorex_pdf_of_another_version)

# All tests run in one process, each time in a different order, which finds state that one test leaves for the
# next. One process per test names what failed; with sanitizers a process takes too long to start for that.
if(VOREX_SANITIZE)
  foreach(index RANGE 1)
    add_test(NAME all_tests_shuffled_part_${index} COMMAND vorex_tests --gtest_shuffle --gtest_brief=1)
    set_tests_properties(all_tests_shuffled_part_${index} PROPERTIES TIMEOUT 900
      ENVIRONMENT "GTEST_TOTAL_SHARDS=2;GTEST_SHARD_INDEX=${index}")
  endforeach()
else()
  include(GoogleTest)
  gtest_discover_tests(vorex_tests DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    NO_PRETTY_TYPES NO_PRETTY_VALUES PROPERTIES TIMEOUT 120)
  add_test(NAME all_tests_shuffled COMMAND vorex_tests --gtest_shuffle --gtest_brief=1)
  set_tests_properties(all_tests_shuffled PROPERTIES RUN_SERIAL ON TIMEOUT 600)
endif()

# Benchmarks. CTest only checks that each still runs; times are measured by hand.
file(GLOB benchmark_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/benchmarks/*_benchmark.cpp")
add_executable(vorex_benchmarks ${benchmark_sources} benchmarks/main.cpp)
vorex_configure_target(vorex_benchmarks)
target_include_directories(vorex_benchmarks PRIVATE "${PROJECT_SOURCE_DIR}/benchmarks")
target_link_libraries(vorex_benchmarks PRIVATE vorex_cli benchmark::benchmark)
add_dependencies(vorex_benchmarks vorex vorex_pdf)
set_target_properties(vorex_benchmarks PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
if(NOT VOREX_SANITIZE)
  add_test(NAME benchmarks_run COMMAND vorex_benchmarks --benchmark_min_time=0.001)
  set_tests_properties(benchmarks_run PROPERTIES TIMEOUT 300)
endif()

include(VorexFuzz)

# Ranks of the files: who may include whom.
find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter)
add_test(NAME include_ranks
  COMMAND "${Python3_EXECUTABLE}" "${PROJECT_SOURCE_DIR}/tools/check_includes.py"
    --source "${PROJECT_SOURCE_DIR}/src")
add_test(NAME include_ranks_self_test
  COMMAND "${Python3_EXECUTABLE}" -B "${PROJECT_SOURCE_DIR}/tools/check_includes_test.py")
add_test(NAME speed_ratios_self_test
  COMMAND "${Python3_EXECUTABLE}" -B "${PROJECT_SOURCE_DIR}/tools/speed_ratios_test.py")

# Every command of the documents prints what they say, and every example ends with the expected code. A user's
# settings must not matter.
add_test(NAME documents COMMAND "${Python3_EXECUTABLE}" -B
  "${PROJECT_SOURCE_DIR}/tests/docs/run_doc_examples.py" --program "$<TARGET_FILE:vorex>")
# A run that is killed loses nothing; tools/kill_test.py kills more often by hand.
add_test(NAME kill_test COMMAND "${Python3_EXECUTABLE}" -B "${PROJECT_SOURCE_DIR}/tools/kill_test.py"
  --program "$<TARGET_FILE:vorex>" --kills 30)
add_test(NAME examples COMMAND "${CMAKE_COMMAND}" -E env "VOREX=$<TARGET_FILE:vorex>"
  "VOREX_SETTINGS=${PROJECT_BINARY_DIR}/no_settings.ini"
  "${PROJECT_SOURCE_DIR}/examples/run_examples.sh" "${PROJECT_BINARY_DIR}/examples")
set_tests_properties(documents kill_test examples PROPERTIES TIMEOUT 300)

# Each header compiles alone: one source per header, without precompiled headers. Built on demand:
# cmake --build --preset release --target header_check
file(GLOB_RECURSE headers RELATIVE "${PROJECT_SOURCE_DIR}/src" CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/src/*.h")
set(header_sources "")
foreach(header IN LISTS headers)
  set(source "${PROJECT_BINARY_DIR}/header_check/${header}.cpp")
  file(CONFIGURE OUTPUT "${source}" CONTENT "#include \"${header}\"\n")
  list(APPEND header_sources "${source}")
endforeach()
add_library(header_check OBJECT EXCLUDE_FROM_ALL ${header_sources})
vorex_configure_target(header_check)
target_compile_options(header_check PRIVATE -Werror)
target_link_libraries(header_check PRIVATE pugixml::pugixml nlohmann_json::nlohmann_json CLI11::CLI11)

# A stand-alone project uses the installed library.
string(REPLACE ";" " " example_flags "${VOREX_SANITIZER_FLAGS}")
add_test(NAME installed_library_example COMMAND "${CMAKE_COMMAND}"
  "-DBUILD_DIR=${PROJECT_BINARY_DIR}" "-DEXAMPLE_DIR=${PROJECT_SOURCE_DIR}/examples/host"
  "-DCXX_COMPILER=${CMAKE_CXX_COMPILER}" "-DCXX_FLAGS=${example_flags}"
  "-DGENERATOR=${CMAKE_GENERATOR}"
  -P "${PROJECT_SOURCE_DIR}/cmake/RunHostExample.cmake")
set_tests_properties(installed_library_example PROPERTIES TIMEOUT 300)
