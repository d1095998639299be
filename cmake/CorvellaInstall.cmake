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

# Only what the face headers include is installed; the rest is internal.
set(include_dir ${CMAKE_INSTALL_INCLUDEDIR}/corvella)
corvella_install_files(${include_dir}/support
  support/error.h support/c-utils.h support/options.h
  ${CMAKE_CURRENT_BINARY_DIR}/include/support/version.h)
foreach(header abort allocation hooks messages print recorder)
  corvella_install_files(${include_dir}/support/error support/error/${header}.h)
endforeach()
foreach(header
    bell calendar clock copy files format numbers parse_float replace spaces string_buffer system
    transform url_encode words wrap)
  corvella_install_files(${include_dir}/support/c-utils support/c-utils/${header}.h)
endforeach()
foreach(header
    web base64 form proxy reply_header reply_status request result transaction update web_error)
  corvella_install_files(${include_dir}/web web/${header}.h)
endforeach()
if(TARGET corvella_platform)
  corvella_install_files(${include_dir}/platform platform/platform.h)
endif()

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
