# Has clang-tidy look at every source before it is compiled; what it complains of is an error.
find_program(CLANG_TIDY clang-tidy-19 REQUIRED)

# Where the cross compiler has the C++ library.
set(library ${CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES})
list(FILTER library INCLUDE REGEX "/c\\+\\+")
list(TRANSFORM library PREPEND --extra-arg=-isystem)

# The build does not know the rules. When they change, so does the command, and every source is looked at again.
file(GLOB rules CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/.clang-tidy ${PROJECT_SOURCE_DIR}/*/.clang-tidy)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${rules})
set(digests)
foreach(file ${rules})
  file(SHA256 ${file} digest)
  string(APPEND digests ${digest})
endforeach()
string(SHA256 digest "${digests}")

set(CMAKE_CXX_CLANG_TIDY ${CLANG_TIDY} --quiet --extra-arg=--target=x86_64-w64-windows-gnu ${library}
  --extra-arg=-DRULES_${digest})
