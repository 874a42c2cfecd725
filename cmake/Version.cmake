# KV_VERSION: the version that the public header states.
set(kv_version_header ${CMAKE_CURRENT_LIST_DIR}/../src/api/KvApplManVersion.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${kv_version_header})
file(STRINGS ${kv_version_header} KV_VERSION REGEX "define KV_APPLMAN_VERSION_(MAJOR|MINOR|PATCH) ")
list(TRANSFORM KV_VERSION REPLACE ".*_(MAJOR|MINOR|PATCH) ([0-9]+).*" "\\2")
list(JOIN KV_VERSION . KV_VERSION)
