# The Debian packages: names, descriptions, dependencies, and the files that each must have in its folder of documents.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON) # with the very same version: a tool uses more than what hosts see
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(revision ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(debian/changelog.in changelog.Debian @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog COPYONLY)
execute_process(COMMAND gzip -9nfk changelog.Debian changelog
  WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR} COMMAND_ERROR_IS_FATAL ANY)

# kv_debian_package(COMPONENT NAME SECTION SUMMARY TEXT [DEPENDS COMPONENT…])
function(kv_debian_package component name section summary text)
  cmake_parse_arguments(PARSE_ARGV 5 package "" "" DEPENDS)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} PARENT_SCOPE)
  string(TOUPPER ${component} upper)
  set(CPACK_COMPONENT_${upper}_DEPENDS ${package_DEPENDS} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)
  install(FILES debian/copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz
    DESTINATION share/doc/${name} COMPONENT ${component})
endfunction()

kv_debian_package(library libkvapplicationmanagerap${PROJECT_VERSION_MAJOR} libs
  "application manager access point, shared libraries"
  "Brings real-time applications onto real-time targets and controls them
there: groups, download, start and stop, information, files, flash memory.
With KvPlatform, the library of messages, devices and connections.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/triggers)

kv_debian_package(development libkvapplicationmanagerap-dev libdevel
  "application manager access point, for development"
  "The headers, and what CMake and pkg-config need, to build host programs
that use the application manager access point."
  DEPENDS library)

kv_debian_package(tools kvapplman-tools devel
  "application manager access point, host tool and simulated target"
  "The program kvapplman, which brings applications onto real-time targets
and controls them from a shell; the program kvtarget, a simulated
real-time target to develop host programs against without hardware; and a
Lua script with which Wireshark names what travels."
  DEPENDS library)
install(CODE "execute_process(COMMAND gzip -9nf kvapplman.1 COMMAND_ERROR_IS_FATAL ANY
  WORKING_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1\")" COMPONENT tools)

if(TARGET documentation)
  kv_debian_package(documentation libkvapplicationmanagerap-doc doc
    "application manager access point, documentation"
    "What the functions of the application manager access point do, the protocol,
the simulated target and the architecture, as pages for a browser.")
  set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
  set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SHLIBDEPS OFF)
endif()

kv_debian_package(python python3-kvapplman python
  "application manager access point, for Python"
  "The Python package kvapplman, to write host programs in Python, and a
plugin for pytest that gives tests a simulated target."
  DEPENDS library)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "python3 (>= 3.9)")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS kvapplman-tools)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/python/postinst
  ${CMAKE_CURRENT_SOURCE_DIR}/debian/python/prerm)
