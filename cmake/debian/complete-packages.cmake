# What Debian wants in each package beside what is installed anywhere: its copyright file and change
# logs, and manual pages compressed. Run by CPack on the folders that the packages are made from.

# Compresses a file without its name and time, so that equal files give equal packages.
function(compress file)
  execute_process(COMMAND gzip -9n ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(complete_package component package)
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component})
  set(documents ${root}/usr/share/doc/${package})
  configure_file(${debian}/copyright ${documents}/copyright COPYONLY)

  # The time is that of SOURCE_DATE_EPOCH when the environment has one.
  string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
  file(WRITE ${documents}/changelog.Debian
"corvella (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * Version ${CPACK_PACKAGE_VERSION}; changelog.gz tells what is new.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
  compress(${documents}/changelog.Debian)
  if(EXISTS ${CPACK_CORVELLA_SOURCE_DIR}/CHANGELOG.md)
    configure_file(${CPACK_CORVELLA_SOURCE_DIR}/CHANGELOG.md ${documents}/changelog COPYONLY)
    compress(${documents}/changelog)
  endif()

  file(READ ${debian}/lintian-overrides overrides)
  if(component STREQUAL "corvella_library")
    file(READ ${debian}/library.lintian-overrides library_overrides)
    string(APPEND overrides "${library_overrides}")
  endif()
  file(WRITE ${root}/usr/share/lintian/overrides/${package} "${overrides}")

  file(GLOB_RECURSE manual_pages ${root}/usr/share/man/*.[0-9])
  foreach(page IN LISTS manual_pages)
    compress(${page})
  endforeach()
endfunction()

set(debian ${CPACK_CORVELLA_SOURCE_DIR}/cmake/debian)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  complete_package(${component} ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
endforeach()
