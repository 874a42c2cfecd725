# What a DLL has that other systems' shared libraries have not: a name without prefix and a version resource.
if(MINGW)
  enable_language(RC)
  add_link_options(-static) # no DLL of the compiler's has to travel along
endif()

function(kv_windows_library target description)
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "")
    set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resource} @ONLY)
    target_sources(${target} PRIVATE ${resource})
  endif()
endfunction()
