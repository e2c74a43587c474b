# The headers of the outside libraries for a Windows compiler: those installed on this system, each through
# its own symbolic link, because their folder also holds headers that are only for this system.

set(outside_headers "${PROJECT_BINARY_DIR}/outside_headers")
file(MAKE_DIRECTORY "${outside_headers}")
foreach(name pugixml.hpp pugiconfig.hpp nlohmann)
  find_path(folder_of_${name} "${name}" PATHS /usr/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  file(CREATE_LINK "${folder_of_${name}}/${name}" "${outside_headers}/${name}" SYMBOLIC)
endforeach()

foreach(library pugixml::pugixml nlohmann_json::nlohmann_json)
  add_library(${library} INTERFACE IMPORTED)
  target_include_directories(${library} SYSTEM INTERFACE "${outside_headers}")
endforeach()
