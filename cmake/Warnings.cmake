# The compiler options of all code of this project (not of test frameworks and generated code).
add_library(kv_options INTERFACE)
target_compile_options(kv_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> # a false alarm of GCC 12 on std::string
  $<$<BOOL:${KV_WARNINGS_AS_ERRORS}>:-Werror>)
target_include_directories(kv_options INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/standin
  ${PROJECT_SOURCE_DIR}/standin/include ${PROJECT_SOURCE_DIR}/src/platform ${PROJECT_SOURCE_DIR}/src/transfer
  ${PROJECT_SOURCE_DIR}/include ${PROJECT_BINARY_DIR})
if(WIN32)
  target_compile_definitions(kv_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
endif()
