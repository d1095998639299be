# What makes an error in the shipped code harder to exploit. The product only: the tests replace
# functions of the C library that _FORTIFY_SOURCE would call by other names.
include(CMakeDependentOption)
include(CheckCXXCompilerFlag)
include(CheckPIESupported)

cmake_dependent_option(CORVELLA_HARDENING "Harden the program and the libraries" ON
  "CORVELLA_IS_TOP_LEVEL;NOT APPLE" OFF)

add_library(corvella_hardening INTERFACE)
if(CORVELLA_HARDENING)
  # The program is linked where it may be loaded anywhere. The libraries always can be.
  check_pie_supported(LANGUAGES CXX)
  # Without -fstack-clash-protection, which would touch all pages of print_indented()'s areas at
  # every message, and make it a tenth slower.
  foreach(protection stack-protector-strong cf-protection)
    string(MAKE_C_IDENTIFIER CORVELLA_KNOWS_${protection} known)
    check_cxx_compiler_flag(-f${protection} ${known})
    if(${known})
      target_compile_options(corvella_hardening INTERFACE -f${protection})
    endif()
  endforeach()
  # Works on optimised code only. Some systems' compilers define another level by themselves.
  target_compile_options(corvella_hardening INTERFACE
    "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  target_link_options(corvella_hardening INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
endif()
