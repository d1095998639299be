# What "cmake --install" puts where, and how callers find it again. The components are the Debian
# packages: corvella_library, corvella_development and corvella_program.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/corvella)
set(installed_targets corvella_support corvella_web)
if(TARGET corvella_platform)
  list(APPEND installed_targets corvella_platform)
endif()
install(TARGETS ${installed_targets} EXPORT corvella-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT corvella_library NAMELINK_COMPONENT corvella_development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT corvella_development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT corvella_library)
if(TARGET corvella)
  install(TARGETS corvella
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT corvella_program)
endif()

# Files for those who build with the layer: corvella_install_files(directory file...)
function(corvella_install_files directory)
  install(FILES ${ARGN} DESTINATION ${directory} COMPONENT corvella_development)
endfunction()

# Installs a face header and the headers that it includes; the others are internal.
function(corvella_install_face face)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${face})
  file(STRINGS ${face} headers REGEX "^#include \"")
  list(TRANSFORM headers REPLACE "^#include \"(.*)\"$" "\\1")
  foreach(header ${face} ${headers})
    get_filename_component(directory ${header} DIRECTORY)
    corvella_install_files(${CMAKE_INSTALL_INCLUDEDIR}/corvella/${directory} ${header})
  endforeach()
endfunction()

corvella_install_face(support/error.h)
corvella_install_face(support/c-utils.h)
corvella_install_face(support/options.h)
corvella_install_face(web/web.h)
if(TARGET corvella_platform)
  corvella_install_face(platform/platform.h)
endif()
corvella_install_files(${CMAKE_INSTALL_INCLUDEDIR}/corvella/support
  ${CMAKE_CURRENT_BINARY_DIR}/include/support/version.h)

install(EXPORT corvella-targets NAMESPACE corvella:: DESTINATION ${package_dir}
  COMPONENT corvella_development)
configure_package_config_file(cmake/corvella-config.cmake.in corvella-config.cmake
  INSTALL_DESTINATION ${package_dir}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(corvella-config-version.cmake COMPATIBILITY SameMajorVersion)
corvella_install_files(${package_dir}
  ${CMAKE_CURRENT_BINARY_DIR}/corvella-config.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/corvella-config-version.cmake)

# The pkg-config file finds its prefix from where it stands, so that the whole can be moved.
file(RELATIVE_PATH pc_prefix_from_pc_dir
  /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" pc_prefix_from_pc_dir "${pc_prefix_from_pc_dir}")
if(APPLE)
  set(pc_libraries "-lcorvella_platform ")
  foreach(framework CoreFoundation CoreServices SystemConfiguration)
    string(APPEND pc_frameworks " -framework ${framework}")
  endforeach()
endif()
configure_file(cmake/corvella.pc.in corvella.pc @ONLY)
corvella_install_files(${CMAKE_INSTALL_LIBDIR}/pkgconfig ${CMAKE_CURRENT_BINARY_DIR}/corvella.pc)
