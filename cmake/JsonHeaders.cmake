# nlohmann-json for every part of the build. A cross build looks only in the
# target's root; the library is header-only, so there its headers are copied
# from the build machine.
find_package(nlohmann_json 3 QUIET)
if(NOT nlohmann_json_FOUND)
  find_path(json_headers nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  file(COPY ${json_headers}/nlohmann DESTINATION ${CMAKE_BINARY_DIR}/json)
  add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED GLOBAL)
  target_include_directories(nlohmann_json::nlohmann_json INTERFACE ${CMAKE_BINARY_DIR}/json)
endif()
