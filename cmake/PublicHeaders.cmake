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
