# How every target of this project is compiled. Linked privately, never installed.
include(CheckCXXSourceCompiles)

# 32-bit x86: floats in SSE registers, so that single precision rounds at every step, and
# files of 2 GiB and more. Asked of the compiler, because -m32 may come from CMAKE_CXX_FLAGS.
check_cxx_source_compiles("
#if !defined(__i386__)
#error not 32-bit x86
#endif
int main() {}
" CORVELLA_TARGET_IS_I386)

add_library(corvella_build_options INTERFACE)
target_compile_features(corvella_build_options INTERFACE cxx_std_17)
target_compile_options(corvella_build_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wformat=2
  # A fused multiply-add would round once where the number functions round twice.
  -ffp-contract=off)
if(CORVELLA_DEVELOPING)
  target_compile_options(corvella_build_options INTERFACE -Werror)
endif()
if(APPLE)
  # Launch Services, Gestalt and their kin: deprecated, and what this system is made for.
  target_compile_options(corvella_build_options INTERFACE -Wno-deprecated-declarations)
endif()
if(CORVELLA_TARGET_IS_I386)
  target_compile_options(corvella_build_options INTERFACE -msse2 -mfpmath=sse)
  target_compile_definitions(corvella_build_options INTERFACE _FILE_OFFSET_BITS=64)
endif()

# One library of the layer: its sources and name are all that differs.
#   corvella_library(support SOURCES a.cpp ...)
function(corvella_library name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES")
  set(target corvella_${name})
  add_library(${target} ${ARG_SOURCES})
  add_library(corvella::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${name}
    CXX_EXTENSIONS OFF
    POSITION_INDEPENDENT_CODE ON)
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/corvella>)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:corvella_build_options>)
endfunction()
