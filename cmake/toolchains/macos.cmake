# What the tool chain files for Mac OS X share. Each sets, and then includes this file:
#   corvella_architecture     i386, x86_64 or arm64
#   corvella_oldest_system    the oldest system that the result runs on, unless
#                             CMAKE_OSX_DEPLOYMENT_TARGET is given
#   corvella_system_version   the Darwin version of that system
# The caller gives, as cache or environment variables:
#   CORVELLA_MACOS_SDK          the SDK's folder
#   CORVELLA_MACOS_LINKER       a linker for Mach-O; on a Mac the compiler's own is the default
#   CORVELLA_MACOS_CXX_LIBRARY  a folder with libc++: include/c++/v1, lib/libc++.a and
#                               lib/libc++abi.a; the default is the SDK's own, which 10.6 has not
set(settings CORVELLA_MACOS_SDK CORVELLA_MACOS_LINKER CORVELLA_MACOS_CXX_LIBRARY)
foreach(setting IN LISTS settings)
  if(NOT ${setting} AND DEFINED ENV{${setting}})
    set(${setting} "$ENV{${setting}}")
  endif()
endforeach()
# The compiler's tests read this file too.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ${settings})

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION ${corvella_system_version})
set(CMAKE_SYSTEM_PROCESSOR ${corvella_architecture})
set(CMAKE_OSX_ARCHITECTURES ${corvella_architecture} CACHE STRING "Architecture")
set(CMAKE_OSX_DEPLOYMENT_TARGET ${corvella_oldest_system} CACHE STRING "Oldest system")

if(NOT IS_DIRECTORY "${CORVELLA_MACOS_SDK}/System/Library/Frameworks")
  message(FATAL_ERROR "CORVELLA_MACOS_SDK has to be the folder of a Mac OS X SDK of"
    " ${corvella_oldest_system} or newer; it is '${CORVELLA_MACOS_SDK}'.")
endif()
set(CMAKE_OSX_SYSROOT ${CORVELLA_MACOS_SDK} CACHE PATH "The SDK")
set(CMAKE_FIND_ROOT_PATH ${CORVELLA_MACOS_SDK})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

if(CORVELLA_MACOS_LINKER AND NOT EXISTS "${CORVELLA_MACOS_LINKER}")
  message(FATAL_ERROR "CORVELLA_MACOS_LINKER has to be a linker for Mach-O, with its path; there"
    " is no '${CORVELLA_MACOS_LINKER}'.")
elseif(NOT CORVELLA_MACOS_LINKER AND NOT CMAKE_HOST_APPLE)
  message(FATAL_ERROR "CORVELLA_MACOS_LINKER has to be a linker for Mach-O, with its path; it is"
    " not given, and this system's own makes no Mach-O.")
endif()

set(cxx_headers "${CORVELLA_MACOS_CXX_LIBRARY}/include/c++/v1")
if(NOT CORVELLA_MACOS_CXX_LIBRARY)
  set(cxx_headers "${CORVELLA_MACOS_SDK}/usr/include/c++/v1")
endif()
if(NOT IS_DIRECTORY "${cxx_headers}")
  message(FATAL_ERROR "CORVELLA_MACOS_CXX_LIBRARY has to be a folder with libc++ for C++17; there"
    " is no '${cxx_headers}'.")
endif()

set(CMAKE_CXX_COMPILER_TARGET ${corvella_architecture}-apple-macosx)
if(NOT CMAKE_CXX_COMPILER AND NOT DEFINED ENV{CXX})
  set(CMAKE_CXX_COMPILER clang++)
endif()
if(NOT CMAKE_HOST_APPLE)
  find_program(CMAKE_AR NAMES llvm-ar llvm-ar-14 REQUIRED)
  find_program(CMAKE_RANLIB NAMES llvm-ranlib llvm-ranlib-14 REQUIRED)
  find_program(CMAKE_INSTALL_NAME_TOOL NAMES install_name_tool llvm-install-name-tool
    llvm-install-name-tool-14 REQUIRED)
endif()
# The compiler's tests only compile: a program for another system cannot be run.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

set(compile_flags "")
set(link_flags "")
if(corvella_oldest_system VERSION_LESS 10.7)
  # Strict C++ hides long long and what stands on it in that SDK's C headers.
  string(APPEND compile_flags " -U__STRICT_ANSI__")
endif()
if(CORVELLA_MACOS_CXX_LIBRARY)
  # A library brought along has everything on every system.
  string(APPEND compile_flags
    " -nostdinc++ -isystem ${cxx_headers} -D_LIBCPP_DISABLE_AVAILABILITY")
  string(APPEND link_flags " -nostdlib++")
  set(CMAKE_CXX_STANDARD_LIBRARIES
    "${CORVELLA_MACOS_CXX_LIBRARY}/lib/libc++.a ${CORVELLA_MACOS_CXX_LIBRARY}/lib/libc++abi.a")
else()
  string(APPEND compile_flags " -stdlib=libc++")
  string(APPEND link_flags " -stdlib=libc++")
endif()
if(CORVELLA_MACOS_LINKER)
  string(APPEND link_flags " --ld-path=${CORVELLA_MACOS_LINKER}")
endif()
set(CMAKE_CXX_FLAGS_INIT "${compile_flags}")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "${link_flags}")
endforeach()
