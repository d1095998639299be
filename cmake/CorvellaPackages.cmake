# The packages: "cpack" in the folder of a build such as that of the preset package (CMake 3.20).
# They are the install components: Debian packages, or on a Mac a tarball and an installer package.
find_program(CORVELLA_DPKG_DEB dpkg-deb)
if(NOT APPLE AND (NOT CORVELLA_DPKG_DEB OR CMAKE_CXX_FLAGS MATCHES "-m32"))
  # What 32-bit programs need has other names on a 64-bit machine than on their own.
  return()
endif()

set(CPACK_PACKAGE_NAME corvella)
set(CPACK_PACKAGE_VENDOR Morvane)
set(CPACK_PACKAGE_CONTACT "Morvane <support@morvane.example>")
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL corvella_library corvella_development)
if(TARGET corvella)
  list(APPEND CPACK_COMPONENTS_ALL corvella_program)
endif()
set(CPACK_COMPONENTS_GROUPING IGNORE)

if(APPLE)
  include(cmake/CorvellaMacPackages.cmake)
else()
  include(cmake/CorvellaDebianPackages.cmake)
endif()
