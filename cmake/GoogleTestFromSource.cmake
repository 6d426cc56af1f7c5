# GoogleTest for the target platform, built from the sources that Debian's package `googletest` installs;
# elsewhere an installed package is used.
find_path(GOOGLETEST_SOURCE CMakeLists.txt PATHS /usr/src/googletest NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
if(GOOGLETEST_SOURCE)
  set(gtest_force_shared_crt ON CACHE INTERNAL "")
  set(INSTALL_GTEST OFF CACHE INTERNAL "")
  add_subdirectory(${GOOGLETEST_SOURCE} googletest EXCLUDE_FROM_ALL SYSTEM)
  target_compile_options(gtest PRIVATE -O0)
else()
  find_package(GTest REQUIRED)
endif()
