# What users get: `make install` puts these into include/kvapplman/, and examples see nothing else.
set(KV_PUBLIC_HEADERS
  src/api/KvApplicationManagerAP.h
  src/api/KvApplManVersion.h
  src/transfer/KvApplManProgress.h
  src/platform/KvExport.h
  standin/include/KvPlatformHost.h
  include/KvApplManConstants.h
  include/KvApplManPlatform.hpp
  include/KvApplManItems.hpp
  include/KvApplManApplication.hpp
  include/KvApplMan.hpp
)
list(TRANSFORM KV_PUBLIC_HEADERS PREPEND ${PROJECT_SOURCE_DIR}/)

# Within the build they lie in one folder, too: files of one line that include the sources.
set(KV_PUBLIC_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include/kvapplman)
foreach(header IN LISTS KV_PUBLIC_HEADERS)
  cmake_path(GET header FILENAME name)
  file(CONFIGURE OUTPUT ${KV_PUBLIC_INCLUDE_DIR}/${name} CONTENT "#include \"${header}\"\n")
endforeach()

# The constants of KvApplManConstants.h as rows, a file per family: CONSTANT(KV_APPLMAN_STATUS_CORE_IDS, coreIds, kCoreIds).
# With them the tables behind the constants prove that both have the same numbers.
function(kv_camel_case name result)
  string(TOLOWER ${name} name)
  string(REGEX MATCHALL "_[a-z0-9]" starts ${name})
  foreach(start IN LISTS starts)
    string(SUBSTRING ${start} 1 1 letter)
    string(TOUPPER ${letter} letter)
    string(REPLACE ${start} ${letter} name ${name})
  endforeach()
  set(${result} ${name} PARENT_SCOPE)
endfunction()

set(constants ${PROJECT_SOURCE_DIR}/include/KvApplManConstants.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${constants})
file(READ ${constants} constants)
foreach(family APPLMAN_STATUS APPLMAN_ITEM APPLMAN_PARAM APPLMAN_STATE APPLMAN_MSG PLATFORM_MSG)
  set(rows "")
  string(REGEX MATCHALL "\n    KV_${family}_[A-Z0-9_]+ = " names "${constants}")
  foreach(name IN LISTS names)
    string(REGEX REPLACE "\n    KV_${family}_([A-Z0-9_]+) = " "\\1" name "${name}")
    kv_camel_case(${name} camel)
    kv_camel_case(K_${name} kCamel)
    string(APPEND rows "CONSTANT(KV_${family}_${name}, ${camel}, ${kCamel})\n")
  endforeach()
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/public_constants/${family}.h CONTENT "${rows}")
endforeach()
