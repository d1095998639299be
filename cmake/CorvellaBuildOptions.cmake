# How every target of this project is compiled. Linked privately, never installed.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)

# 32-bit x86: floats in SSE registers, so that single precision rounds at every step, files of 2 GiB
# and more, and times after 2038 where the C library has them: glibc from 2.34 on, others ignore
# _TIME_BITS. Asked of the compiler, because -m32 may come from CMAKE_CXX_FLAGS.
check_cxx_source_compiles("
#if !defined(__i386__)
#error not 32-bit x86
#endif
int main() {}
" CORVELLA_TARGET_IS_I386)

add_library(corvella_build_options INTERFACE)
target_compile_features(corvella_build_options INTERFACE cxx_std_17)
# A fused multiply-add would round once where the number functions round twice.
target_compile_options(corvella_build_options INTERFACE -ffp-contract=off)
include(cmake/CorvellaWarnings.cmake)
if(CORVELLA_INSTALL AND NOT CORVELLA_DEVELOPING)
  # What is installed names no folder of the machine that it was built on.
  check_cxx_compiler_flag(-ffile-prefix-map=/a=. CORVELLA_HAS_FILE_PREFIX_MAP)
  if(CORVELLA_HAS_FILE_PREFIX_MAP)
    target_compile_options(corvella_build_options INTERFACE
      -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.
      -ffile-prefix-map=${CMAKE_BINARY_DIR}=.)
  endif()
endif()
if(CORVELLA_TARGET_IS_I386)
  target_compile_options(corvella_build_options INTERFACE -msse2 -mfpmath=sse)
  target_compile_definitions(corvella_build_options INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
endif()

include(cmake/CorvellaHardening.cmake)
if(APPLE)
  include(cmake/CorvellaMacOS.cmake)
endif()

# Lets an installed library or program find the libraries of the layer beside it, wherever the whole
# is moved to. Below /usr the system finds them.
#   corvella_find_libraries_from(target ${CMAKE_INSTALL_BINDIR})
function(corvella_find_libraries_from target directory)
  if(NOT BUILD_SHARED_LIBS OR (NOT APPLE AND CMAKE_INSTALL_PREFIX STREQUAL "/usr"))
    return()
  endif()
  file(RELATIVE_PATH way /prefix/${directory} /prefix/${CMAKE_INSTALL_LIBDIR})
  if(APPLE)
    set(origin "@loader_path")
  else()
    set(origin "$ORIGIN")
  endif()
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "${origin}/${way}")
endfunction()

# One library of the layer: its sources and name are all that differs. Shared, it exports what its
# public headers mark as visible.
#   corvella_library(support SOURCES a.cpp ...)
function(corvella_library name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES")
  set(target corvella_${name})
  add_library(${target} ${ARG_SOURCES})
  add_library(corvella::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${name}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/corvella>)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:corvella_build_options>
    $<BUILD_INTERFACE:corvella_hardening>)
  if(BUILD_SHARED_LIBS)
    corvella_find_libraries_from(${target} ${CMAKE_INSTALL_LIBDIR})
  endif()
endfunction()
