# shellcheck shell=bash
# shellcheck disable=SC2034  # read by setup.sh, by name
# The Debian packages that this repository needs, grouped by purpose: packages_GROUP for `setup.sh GROUP…`.
# Debian 12 and 13 both have clang 19: with the version in its name, format, checks, warnings and sanitizers are the same on both.

# Cross-compiling the program. (Every preset configures the tests, too, some of which are Python's.)
packages_build=(cmake ninja-build g++-mingw-w64-x86-64-posix python3 googletest)

# Running it on a virtual desktop: Wine and what it loads at run time for text, pointers and screens, a display
# server, a window manager (without one there is no activation and no keyboard focus), tools to press, paint and look.
packages_desktop=(
  wine wine64 fonts-wine fonts-liberation fonts-dejavu-core
  libxrender1 libxcursor1 libxi6 libxrandr2 libxcomposite1 libxinerama1
  xvfb openbox xdotool x11-xserver-utils imagemagick)

# Building and running the tests, the native ones with sanitizers and fuzzer, those of the samples, and the benchmarks.
packages_test=(
  clang-19 libclang-rt-19-dev libbenchmark-dev
  nodejs mono-mcs libmono-system-windows-forms4.0-cil fp-compiler fp-units-rtl)

# Making the packages: pages from documents, the MSI and a look into it, notices from copyright files, manifests.
packages_package=(pandoc wixl msitools gir1.2-libmsi-1.0 python3-gi python3-debian python3-yaml python3-fastjsonschema python3-lxml)

# The schema of the bill of materials, which is in none of them (sbom_schema.sh); and signing.
packages_schema=(npm)
packages_signing=(osslsigncode)

# Checking format and style; and a compiler with Visual C++'s mode, headers of the platform and of a C++ library for it.
packages_lint=(clang-format-19 clang-tidy-19 shellcheck clang-19 libwine-dev libc++-19-dev)

# Measuring coverage and mutation.
packages_coverage=(gcovr)
packages_mutation=(rsync)

# Working pages in a real browser: it, its driver, what starts the program for a scheme, and what tells a page's functions.
packages_browser=(chromium chromium-driver xdg-utils python3 nodejs)
