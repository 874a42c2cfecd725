# kv_foreign_applman: the routines of the records and a client, made by rpcgen from docs/applman.x, over libtirpc.
enable_language(C)
find_package(PkgConfig REQUIRED)
pkg_check_modules(TIRPC REQUIRED IMPORTED_TARGET libtirpc)
find_program(RPCGEN rpcgen REQUIRED)

set(description ${PROJECT_SOURCE_DIR}/docs/applman.x)
set(generated ${CMAKE_CURRENT_BINARY_DIR}/generated)
file(MAKE_DIRECTORY ${generated})
function(kv_rpcgen kind file)
  add_custom_command(OUTPUT ${generated}/${file}
    COMMAND ${CMAKE_COMMAND} -E rm -f ${generated}/${file}
    COMMAND ${RPCGEN} -C -M ${kind} -o ${generated}/${file} applman.x
    DEPENDS ${description} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}/docs VERBATIM)
endfunction()
kv_rpcgen(-h applman.h)
kv_rpcgen(-c applman_xdr.c)
kv_rpcgen(-l applman_clnt.c)

add_library(kv_foreign_applman STATIC
  ${generated}/applman.h ${generated}/applman_xdr.c ${generated}/applman_clnt.c)
target_compile_options(kv_foreign_applman PRIVATE -w)
target_include_directories(kv_foreign_applman SYSTEM PUBLIC ${generated})
target_link_libraries(kv_foreign_applman PUBLIC PkgConfig::TIRPC)
