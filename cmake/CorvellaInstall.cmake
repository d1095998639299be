# What "cmake --install" puts where, and how callers find it again.
include(CMakePackageConfigHelpers)

set(installed_targets corvella_support corvella_web)
if(TARGET corvella_platform)
  list(APPEND installed_targets corvella_platform)
  install(FILES platform/platform.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvella/platform)
endif()
install(TARGETS ${installed_targets} EXPORT corvella-targets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(TARGET corvella)
  install(TARGETS corvella RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# Only what the face headers include is installed; the rest is internal.
install(FILES support/error.h support/c-utils.h support/options.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvella/support)
foreach(header abort allocation hooks messages print recorder)
  install(FILES support/error/${header}.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvella/support/error)
endforeach()
foreach(header
    bell calendar clock copy files format numbers parse_float replace spaces string_buffer system
    transform url_encode words wrap)
  install(FILES support/c-utils/${header}.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvella/support/c-utils)
endforeach()
foreach(header web base64 form proxy reply_status request transaction update web_error)
  install(FILES web/${header}.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvella/web)
endforeach()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/corvella)
install(EXPORT corvella-targets NAMESPACE corvella:: DESTINATION ${package_dir})
configure_package_config_file(cmake/corvella-config.cmake.in corvella-config.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(corvella-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/corvella-config.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/corvella-config-version.cmake
  DESTINATION ${package_dir})

# The pkg-config file finds its prefix from where it stands, so that the whole can be moved.
file(RELATIVE_PATH pc_prefix_from_pc_dir
  /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" pc_prefix_from_pc_dir "${pc_prefix_from_pc_dir}")
if(APPLE)
  set(pc_libraries "-lcorvella_platform ")
  set(pc_frameworks " -framework CoreFoundation -framework CoreServices -framework SystemConfiguration")
endif()
configure_file(cmake/corvella.pc.in corvella.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/corvella.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
