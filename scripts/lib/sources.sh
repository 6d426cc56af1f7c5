# shellcheck shell=bash
# Prints this repository's C++ files, one a line. The build folder and hidden folders are not looked at.
cpp_files()
{
  find . -path ./build -prune -o -path './.?*' -prune -o -type f \( -name '*.h' -o -name '*.cpp' \) -print | sort
}
