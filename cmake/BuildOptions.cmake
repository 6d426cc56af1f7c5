# What every target of the Windows builds is compiled and linked with: link `quillet_build_options`.
add_library(quillet_build_options INTERFACE)
target_compile_definitions(quillet_build_options INTERFACE
  UNICODE _UNICODE WINVER=0x0A00 _WIN32_WINNT=0x0A00 NOMINMAX)
target_include_directories(quillet_build_options INTERFACE ${PROJECT_SOURCE_DIR})

if(MSVC)
  target_compile_options(quillet_build_options INTERFACE /W4 /WX /utf-8 /permissive-)
  # The vendor's dialog framework, as shared library, takes the place of framework/.
  set(CMAKE_MFC_FLAG 2)
  target_compile_definitions(quillet_build_options INTERFACE _AFXDLL)
  # It warns of functions of the C library (swscanf, getenv) for which it has replacements of its own.
  target_compile_definitions(quillet_build_options INTERFACE _CRT_SECURE_NO_WARNINGS)
  return()
endif()

# Without the parts of <windows.h> that few sources need, and most of the time of compiling goes into: those name them.
target_compile_definitions(quillet_build_options INTERFACE WIN32_LEAN_AND_MEAN)
# For the headers there, which stand for the toolchain's own of the same name.
target_include_directories(quillet_build_options SYSTEM INTERFACE ${PROJECT_SOURCE_DIR}/runtime)
target_compile_options(quillet_build_options INTERFACE
  ${QUILLET_WARNINGS}
  -fstack-protector-strong
  -ffunction-sections -fdata-sections
  # Two builds in two folders give the same bytes.
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
# The linker's defaults already ask for ASLR with high entropy, a relocation section and NX; the
# tests read them from the built file, so that a change of defaults does not go unnoticed.
target_link_options(quillet_build_options INTERFACE
  -static -municode -Wl,--gc-sections -Wl,--no-insert-timestamp)

if(QUILLET_CHECKED)
  target_compile_definitions(quillet_build_options INTERFACE _GLIBCXX_ASSERTIONS QUILLET_CHECKED)
  # Traps need no run-time library.
  target_compile_options(quillet_build_options INTERFACE
    -fsanitize=undefined -fsanitize-undefined-trap-on-error -fno-omit-frame-pointer)
elseif(QUILLET_COVERAGE)
  target_compile_options(quillet_build_options INTERFACE --coverage)
  target_link_options(quillet_build_options INTERFACE --coverage)
else()
  target_link_options(quillet_build_options INTERFACE -s)
endif()
