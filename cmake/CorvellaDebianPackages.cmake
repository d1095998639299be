# The Debian packages of a shared build for /usr.
set(library_package libcorvella${PROJECT_VERSION_MAJOR})
set(debian_revision 1)
set(debian_version ${PROJECT_VERSION}-${debian_revision})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${debian_revision})
set(CPACK_DEBIAN_PACKAGE_SOURCE corvella)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${CMAKE_CURRENT_BINARY_DIR}/support ${CMAKE_CURRENT_BINARY_DIR}/web)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(CPACK_DEBIAN_CORVELLA_LIBRARY_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_CORVELLA_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_CORVELLA_LIBRARY_PACKAGE_CONTROL_EXTRA
  ${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_CORVELLA_LIBRARY_DESCRIPTION
"support layer of a small command-line tool
A blocking HTTP/1.0 web client, one message and error facility, and text,
file, option, clock and calendar utilities, in C++.

This package holds the shared libraries.")

set(CPACK_DEBIAN_CORVELLA_DEVELOPMENT_PACKAGE_NAME libcorvella-dev)
set(CPACK_DEBIAN_CORVELLA_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_CORVELLA_DEVELOPMENT_PACKAGE_DEPENDS "${library_package} (= ${debian_version})")
set(CPACK_DEBIAN_CORVELLA_DEVELOPMENT_DESCRIPTION
"support layer of a small command-line tool - development files
A blocking HTTP/1.0 web client, one message and error facility, and text,
file, option, clock and calendar utilities, in C++.

This package holds the headers and what CMake and pkg-config need.")

set(CPACK_DEBIAN_CORVELLA_PROGRAM_PACKAGE_NAME corvella)
set(CPACK_DEBIAN_CORVELLA_PROGRAM_PACKAGE_SECTION web)
set(CPACK_DEBIAN_CORVELLA_PROGRAM_PACKAGE_DEPENDS "${library_package} (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_CORVELLA_PROGRAM_DESCRIPTION
"small command-line web client
It gets pages, posts forms, asks a web service for updates of a product and
describes the machine.")

# A script of ours puts the rest there that Debian wants in each package.
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/cpack-config.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/complete-packages.cmake)
set(CPACK_CORVELLA_SOURCE_DIR ${CMAKE_CURRENT_SOURCE_DIR})
include(CPack)
