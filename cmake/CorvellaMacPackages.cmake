# The packages for Mac OS X: a tarball of everything, and an installer package in which each
# component is a choice. The caller signs it: CPACK_PRODUCTBUILD_IDENTITY_NAME, docs/mac.md.
set(CPACK_GENERATOR TGZ productbuild)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr/local)
set(CPACK_PACKAGE_FILE_NAME corvella-${PROJECT_VERSION}-macos)
if(CMAKE_OSX_ARCHITECTURES)
  string(REPLACE ";" "-" architectures "${CMAKE_OSX_ARCHITECTURES}")
  string(APPEND CPACK_PACKAGE_FILE_NAME -${architectures})
endif()
set(CPACK_PRODUCTBUILD_IDENTIFIER com.morvane.corvella)

# The installer shows text files only.
configure_file(cmake/debian/copyright package/copyright.txt COPYONLY)
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/package/about.txt
  "Corvella ${PROJECT_VERSION}: ${PROJECT_DESCRIPTION}.\n")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_CURRENT_BINARY_DIR}/package/copyright.txt)
set(CPACK_RESOURCE_FILE_WELCOME ${CMAKE_CURRENT_BINARY_DIR}/package/about.txt)
set(CPACK_RESOURCE_FILE_README ${CMAKE_CURRENT_BINARY_DIR}/package/about.txt)

include(CPack)
if(BUILD_SHARED_LIBS)
  set(needs_library DEPENDS corvella_library)
endif()
cpack_add_component(corvella_library DISPLAY_NAME "Shared libraries"
  DESCRIPTION "The shared libraries of Corvella's support layer")
cpack_add_component(corvella_development DISPLAY_NAME "Development files"
  DESCRIPTION "The headers and what CMake and pkg-config need" ${needs_library})
cpack_add_component(corvella_program DISPLAY_NAME "The program corvella"
  DESCRIPTION "A small command-line web client" ${needs_library})
