# What all targets share: language level, warnings, sanitizers, compiler cache, precompiled standard headers,
# and the functions that make a target of the sources found in folders.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

if(NOT CMAKE_BUILD_TYPE AND PROJECT_IS_TOP_LEVEL)
  set(CMAKE_BUILD_TYPE Release)
endif()

# The cache has to know that precompiled headers are in use, or it passes everything on to the compiler.
find_program(VOREX_CCACHE ccache)
mark_as_advanced(VOREX_CCACHE)
if(VOREX_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime "${VOREX_CCACHE}")
endif()

set(VOREX_GENERATED_DIR "${PROJECT_BINARY_DIR}/generated")
configure_file("${PROJECT_SOURCE_DIR}/cmake/version.h.in" "${VOREX_GENERATED_DIR}/version.h" @ONLY)

set(VOREX_SANITIZER_FLAGS "")
if(VOREX_SANITIZE)
  set(VOREX_SANITIZER_FLAGS "-fsanitize=${VOREX_SANITIZE}" -fno-sanitize-recover=all)
endif()

# Warnings of every target. Interfaces hold pairs of overloads named as their property, of which a class may
# override one: -Woverloaded-virtual stays off. A table row may leave its last fields to their defaults:
# -Wmissing-field-initializers stays off.
set(VOREX_WARNINGS -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wsuggest-override -Wcast-qual
  -Wextra-semi -Wno-overloaded-virtual -Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  list(APPEND VOREX_WARNINGS -Wduplicated-cond -Wlogical-op)
  if(CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # These report the standard library's own copying of short strings at -O2; the sanitizer build finds the
    # real ones.
    list(APPEND VOREX_WARNINGS
      -Wno-restrict -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
  endif()
endif()
if(VOREX_WARNINGS_AS_ERRORS)
  # The optimiser only guesses that a value may be unset, so this is a warning and not an error.
  list(APPEND VOREX_WARNINGS -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    list(APPEND VOREX_WARNINGS -Wno-error=maybe-uninitialized)
  endif()
endif()

function(vorex_configure_target target)
  target_compile_options(${target} PRIVATE ${VOREX_WARNINGS} ${VOREX_SANITIZER_FLAGS})
  target_link_options(${target} PRIVATE ${VOREX_SANITIZER_FLAGS})
  if(VOREX_FUZZING)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/src" "${VOREX_GENERATED_DIR}")
endfunction()

# Holds the precompiled standard headers that the libraries share. Each source still names what it uses: the
# header check and the static check compile without them.
set(VOREX_STANDARD_HEADERS <algorithm> <array> <chrono> <cstdint> <filesystem> <functional> <map> <memory>
  <optional> <span> <sstream> <stdexcept> <string> <string_view> <utility> <variant> <vector>)
set(standard_headers_source "${PROJECT_BINARY_DIR}/generated_sources/standard_headers.cpp")
file(CONFIGURE OUTPUT "${standard_headers_source}" CONTENT "// Nothing but the precompiled headers.\n")
add_library(vorex_standard_headers OBJECT EXCLUDE_FROM_ALL "${standard_headers_source}")
vorex_configure_target(vorex_standard_headers)
target_precompile_headers(vorex_standard_headers PRIVATE ${VOREX_STANDARD_HEADERS})

# vorex_add_library(<target> [FOLDERS <folder of src>...] [FILES <file>...] [EXCEPT <file>...] [LINK <target>...])
# A static library of every .cpp in the folders (not below them) and the files. A folder without sources, or a
# file that does not exist, is an error.
function(vorex_add_library target)
  cmake_parse_arguments(arg "" "" "FOLDERS;FILES;EXCEPT;LINK" ${ARGN})
  set(sources ${arg_FILES})
  foreach(folder IN LISTS arg_FOLDERS)
    file(GLOB found RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS
      "${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp")
    if(NOT found)
      message(FATAL_ERROR "${target}: src/${folder} has no sources")
    endif()
    list(APPEND sources ${found})
  endforeach()
  foreach(file IN LISTS arg_EXCEPT)
    if(NOT file IN_LIST sources)
      message(FATAL_ERROR "${target}: there is no ${file} to leave out")
    endif()
    list(REMOVE_ITEM sources "${file}")
  endforeach()

  add_library(${target} STATIC ${sources})
  vorex_configure_target(${target})
  # A double becomes a single only where the code says so.
  target_compile_options(${target} PRIVATE -Wfloat-conversion)
  target_precompile_headers(${target} REUSE_FROM vorex_standard_headers)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_include_directories(${target} PUBLIC
    "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>"
    "$<BUILD_INTERFACE:${VOREX_GENERATED_DIR}>"
    "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/vorex>")
  target_link_libraries(${target} PUBLIC ${arg_LINK})
endfunction()

# The folders that the program looks for in ../share/vorex/<name>, relative to its own folder.
set(VOREX_DATA_FOLDERS languages standards examples)

# The build tree has them in the same place as an installation.
function(vorex_link_data_folders)
  set(share "${PROJECT_BINARY_DIR}/share/vorex")
  file(MAKE_DIRECTORY "${share}")
  foreach(folder IN LISTS VOREX_DATA_FOLDERS)
    file(RELATIVE_PATH original "${share}" "${PROJECT_SOURCE_DIR}/${folder}")
    file(CREATE_LINK "${original}" "${share}/${folder}" SYMBOLIC)
  endforeach()
endfunction()
