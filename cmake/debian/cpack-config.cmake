# Each package's description begins with a summary of its own; the project's would come before it.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
