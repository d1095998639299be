# The warnings. Every build has the first group, which any compiler knows; a developing build has
# all of what g++ 12 and clang++ 14 offer, as errors, except what the end of this file names.
target_compile_options(corvella_build_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wformat=2)

set(developing_warnings
  -Walloca
  -Wcast-align
  -Wcast-qual
  -Wdate-time
  -Wdouble-promotion
  -Wextra-semi
  -Winvalid-pch
  -Wmismatched-tags
  -Wmissing-declarations
  -Wmissing-include-dirs
  -Wnon-virtual-dtor
  -Wold-style-cast
  -Woverloaded-virtual
  -Wsign-conversion
  -Wsuggest-override
  -Wundef
  -Wunused-macros
  -Wvla
  -Wzero-as-null-pointer-constant)
set(developing_warnings_of_gcc
  -Walloc-zero
  -Warith-conversion
  -Warray-bounds=2
  -Wcast-align=strict
  -Wcatch-value=3
  -Wcomma-subscript
  -Wconditionally-supported
  -Wctad-maybe-unsupported
  -Wdeprecated-copy-dtor
  -Wduplicated-branches
  -Wduplicated-cond
  -Wformat-overflow=2
  -Wformat-signedness
  -Wimplicit-fallthrough=5
  -Wlogical-op
  -Wredundant-tags
  -Wshift-overflow=2
  -Wstringop-overflow=4
  -Wsuggest-attribute=noreturn
  -Wtrampolines
  -Wvolatile)
set(developing_warnings_of_clang
  -Wassign-enum
  -Wbad-function-cast
  -Wcomma
  -Wconditional-uninitialized
  -Wdeprecated
  -Wextra-semi-stmt
  -Wformat-type-confusion
  -Wheader-hygiene
  -Wimplicit-fallthrough
  -Wloop-analysis
  -Wmissing-prototypes
  -Wmissing-variable-declarations
  -Wshadow-all
  -Wstring-conversion
  -Wtautological-compare
  -Wunreachable-code-aggressive
  -Wunused-member-function
  -Wunused-template)
if(CORVELLA_DEVELOPING)
  target_compile_options(corvella_build_options INTERFACE -Werror ${developing_warnings}
    "$<$<CXX_COMPILER_ID:GNU>:${developing_warnings_of_gcc}>"
    "$<$<CXX_COMPILER_ID:Clang>:${developing_warnings_of_clang}>")
endif()
if(APPLE)
  # Launch Services, Gestalt and their kin: deprecated, and what this system is made for.
  target_compile_options(corvella_build_options INTERFACE -Wno-deprecated-declarations)
endif()

# Left out:
#   -Wabi-tag, -Wnamespaces, -Wtemplates    forbid parts of C++ that are used.
#   -Wdocumentation (clang)                 does not know the "\param a,b" of Doxygen.
#   -Wdisabled-macro-expansion,             speak of the macros of the C library and of GoogleTest.
#   -Wglobal-constructors, -Wused-but-marked-unused, -Wweak-vtables (clang)
#   -Weffc++                                wants empty texts and lists in every record's list.
#   -Wexit-time-destructors (clang)         the program's table of options is one.
#   -Wfloat-equal                           0 is asked for exactly, before a division by it.
#   -Wformat-truncation=2                   the bounded texts are cut on purpose.
#   -Wframe-larger-than=                    print_indented() has a large buffer on purpose.
#   -Wnull-dereference                      reports the streams of the C++ library, inlined.
#   -Wpadded                                the records are laid out as callers know them.
#   -Wredundant-decls                       the tests replace what _FORTIFY_SOURCE defines.
#   -Wreserved-identifier (clang)           the tests wrap functions by the linker's names for them.
#   -Wstrict-overflow                       reports what the optimiser does, not what is wrong.
#   -Wsuggest-attribute=format              does not see the attribute on a declaration in a header.
#   -Wsuggest-attribute=const and others    advise the optimiser, which sees for itself.
#   -Wswitch-default                        a switch that names every enumerator needs no default.
#   -Wswitch-enum                           where there is a default, it stands for the others.
#   -Wtautological-type-limit-compare       true on one width of the machine, not on the other.
#   -Wunused-const-variable=2               a header's constants need not all be used by everyone.
#   -Wuseless-cast                          a cast may do nothing on one system only.
