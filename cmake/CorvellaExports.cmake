# Which names a shared library offers. Its folder's exported-symbols.txt lists them; here they
# become what the linker reads: a version script, or on Mac OS X a list of exported symbols.

# The pattern of one listed name among the mangled ones. The length in it tells names apart that
# begin alike; the star stands for the arguments, which differ with the word size.
function(corvella_mangled_pattern name out)
  set(star "")
  if(name MATCHES "^(.+)\\(\\)$")
    set(prefix _Z)
    set(star "*")
  elseif(name MATCHES "^typeinfo for (.+)$")
    set(prefix _ZTI)
  elseif(name MATCHES "^typeinfo name for (.+)$")
    set(prefix _ZTS)
  else()
    # A variable is not mangled.
    set(${out} ${name} PARENT_SCOPE)
    return()
  endif()
  set(plain ${CMAKE_MATCH_1})
  string(LENGTH ${plain} length)
  set(${out} "${prefix}${length}${plain}${star}" PARENT_SCOPE)
endfunction()

# Hides everything in a shared library but the names of a list.
function(corvella_export_only target list)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
  file(STRINGS ${list} names REGEX "^[^#]")
  set(lines "")
  foreach(name IN LISTS names)
    corvella_mangled_pattern(${name} pattern)
    if(APPLE)
      # Every name has one more underscore there.
      string(APPEND lines "_${pattern}\n")
    else()
      string(APPEND lines "    ${pattern};\n")
    endif()
  endforeach()

  set(file ${CMAKE_CURRENT_BINARY_DIR}/${target}.exports)
  if(APPLE)
    set(option "LINKER:-exported_symbols_list,${file}")
  else()
    set(option "LINKER:--version-script=${file}")
    string(CONCAT lines
      "CORVELLA_${PROJECT_VERSION_MAJOR} {\n  global:\n${lines}  local:\n    *;\n};\n")
  endif()
  file(GENERATE OUTPUT ${file} CONTENT "${lines}")
  target_link_options(${target} PRIVATE ${option})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${file})
endfunction()
