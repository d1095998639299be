# 64-bit Intel, with the C++ library of the system: 10.9 and newer. See macos.cmake.
set(corvella_architecture x86_64)
set(corvella_oldest_system 10.9)
set(corvella_system_version 13.0.0)
include(${CMAKE_CURRENT_LIST_DIR}/macos.cmake)
