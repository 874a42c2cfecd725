# What the two shared libraries have in common: version, exports, public headers, how they are found.
if(MINGW)
  enable_language(RC)
  add_link_options(-static) # no DLL of the compiler's has to travel along
endif()

# kv_shared_library(TARGET DESCRIPTION VERSION_SCRIPT): for a target that exists.
function(kv_shared_library target description version_script)
  add_library(KvApplicationManagerAP::${target} ALIAS ${target})
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX INSTALL_RPATH "$ORIGIN"
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  target_include_directories(${target} INTERFACE
    $<BUILD_INTERFACE:${KV_PUBLIC_INCLUDE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/kvapplman>)
  if(WIN32)
    kv_windows_library(${target} "${description}")
  else()
    target_link_options(${target} PRIVATE LINKER:--version-script=${version_script})
    if(NOT KV_SANITIZERS) # Clang leaves the sanitizers' own functions to the program
      target_link_options(${target} PRIVATE LINKER:--no-undefined)
    endif()
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${version_script})
  endif()
endfunction()

# A DLL has a name without prefix and a version resource; beside its import library lies a list of what it exports, from
# which other compilers make theirs.
function(kv_windows_library target description)
  set_target_properties(${target} PROPERTIES PREFIX "")
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource})
  set(exports ${CMAKE_CURRENT_BINARY_DIR}/${target}.exports)
  target_link_options(${target} PRIVATE LINKER:--output-def,${exports})
  file(CONFIGURE OUTPUT ${exports}.name CONTENT "LIBRARY ${target}.dll\n")
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E cat ${exports}.name ${exports} >$<TARGET_LINKER_FILE_DIR:${target}>/${target}.def)
endfunction()
