# 64-bit ARM: macOS 11 and newer. See macos.cmake and docs/mac.md.
set(corvella_architecture arm64)
set(corvella_oldest_system 11.0)
set(corvella_system_version 20.0.0)
include(${CMAKE_CURRENT_LIST_DIR}/macos.cmake)
