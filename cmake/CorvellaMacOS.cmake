# What is linked differently on Mac OS X. CMake asks sw_vers whether the system has run-time search
# paths; a cross build has no sw_vers, and each system since 10.5 has them.
set(CMAKE_SHARED_LIBRARY_RUNTIME_C_FLAG "-Wl,-rpath,")
set(CMAKE_SHARED_LIBRARY_RUNTIME_CXX_FLAG "-Wl,-rpath,")
set(CMAKE_LINK_DEPENDENT_LIBRARY_FILES 0)
set(CMAKE_MACOSX_RPATH ON)
set(CMAKE_INSTALL_NAME_DIR "@rpath")

# Lets the system load a program anywhere. Linkers do so by themselves for 10.7 and newer only.
#   corvella_link_position_independent(target)
function(corvella_link_position_independent target)
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_link_options(${target} PRIVATE LINKER:-pie)
endfunction()
