# What g++ and clang++ warn of in all of this repository's sources; a warning is an error.
set(QUILLET_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
