# 64-bit Intel, Mac OS X 10.6 and newer. See macos.cmake and docs/mac.md.
set(corvella_architecture x86_64)
set(corvella_oldest_system 10.6)
set(corvella_system_version 10.8.0)
include(${CMAKE_CURRENT_LIST_DIR}/macos.cmake)
