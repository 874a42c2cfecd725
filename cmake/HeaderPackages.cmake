# Header-only packages of the build machine. Each is linked into a folder of its own, so that a compiler for another system
# sees no other header of /usr/include.

function(kv_header_package target folder header)
  find_path(${target}_DIR ${folder}/${header} PATHS /usr/include /usr/local/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  set(private ${CMAKE_BINARY_DIR}/header_packages/${target})
  file(MAKE_DIRECTORY ${private})
  file(CREATE_LINK ${${target}_DIR}/${folder} ${private}/${folder} SYMBOLIC)
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${private})
endfunction()

kv_header_package(kv_cli11 CLI CLI.hpp)
kv_header_package(kv_json nlohmann json.hpp)
