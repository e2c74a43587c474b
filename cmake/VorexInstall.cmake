# Installation. Component "development": library, headers and package files; component "program": the
# program and its data.

include(CMakePackageConfigHelpers)
set(VOREX_PACKAGE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/vorex")

install(TARGETS vorex_test_library EXPORT vorexTargets
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)
foreach(folder IN LISTS VOREX_LIBRARY_FOLDERS)
  install(DIRECTORY "src/${folder}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vorex"
    COMPONENT development FILES_MATCHING PATTERN "*.h")
endforeach()
# What programs on the application layer need in addition: a set of its own, because it needs outside
# libraries.
set(VOREX_APP_TARGETS vorex_app vorex_instruments vorex_host vorex_system)
install(TARGETS ${VOREX_APP_TARGETS} EXPORT vorexAppTargets
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)
foreach(target IN LISTS VOREX_APP_TARGETS)
  string(REPLACE vorex_ "" name ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
endforeach()
foreach(folder app instruments host files reports system)
  install(DIRECTORY "src/${folder}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vorex"
    COMPONENT development FILES_MATCHING PATTERN "*.h")
endforeach()
install(EXPORT vorexAppTargets NAMESPACE vorex:: DESTINATION "${VOREX_PACKAGE_DIR}" COMPONENT development)
install(FILES src/library.h "${VOREX_GENERATED_DIR}/version.h"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vorex" COMPONENT development)

install(EXPORT vorexTargets NAMESPACE vorex:: DESTINATION "${VOREX_PACKAGE_DIR}" COMPONENT development)
configure_package_config_file(cmake/vorexConfig.cmake.in "${PROJECT_BINARY_DIR}/vorexConfig.cmake"
  INSTALL_DESTINATION "${VOREX_PACKAGE_DIR}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/vorexConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/vorexConfig.cmake" "${PROJECT_BINARY_DIR}/vorexConfigVersion.cmake"
  DESTINATION "${VOREX_PACKAGE_DIR}" COMPONENT development)

install(TARGETS vorex RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT program)
install(TARGETS vorex_pdf LIBRARY DESTINATION lib/vorex COMPONENT program)
foreach(folder IN LISTS VOREX_DATA_FOLDERS)
  install(DIRECTORY "${folder}" DESTINATION "${CMAKE_INSTALL_DATADIR}/vorex"
    COMPONENT program PATTERN "out" EXCLUDE)
endforeach()
install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT program)
