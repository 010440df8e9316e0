# For building for a Mac with 64-bit Arm on another computer; scripts/check-macos lays out the folder that is used here.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CMAKE_OSX_SYSROOT "")

get_filename_component(folder "${CMAKE_CURRENT_LIST_DIR}/../../build/macos" ABSOLUTE)
set(CMAKE_C_COMPILER "${folder}/bin/cc")
set(CMAKE_CXX_COMPILER "${folder}/bin/c++")
set(CMAKE_AR "${folder}/bin/ar")
set(CMAKE_RANLIB "${folder}/bin/ranlib")
set(CMAKE_INSTALL_NAME_TOOL true)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

# Nothing of this computer but what is in that folder.
set(CMAKE_FIND_ROOT_PATH "${folder}/prefix")
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(ENV{PKG_CONFIG_LIBDIR} "${folder}/prefix/lib/pkgconfig")
