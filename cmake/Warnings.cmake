# The warnings and the hardening that every target takes, for GCC and Clang alike; the presets turn warnings into errors.
# Position independent code and the rest of the hardening flags are those that Debian builds its own packages with.
add_library(orvane_warnings INTERFACE)
add_library(orvane::warnings ALIAS orvane_warnings)
target_compile_options(orvane_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wold-style-cast
    -Werror=format-security
    -fstack-protector-strong)
target_compile_definitions(orvane_warnings INTERFACE $<$<CONFIG:Release>:_FORTIFY_SOURCE=2>)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# Not every processor and system has these. tests/e2e/test_hardening.py reads them back from the product on Linux.
include(CheckCXXCompilerFlag)
foreach(flag stack-clash-protection cf-protection)
    string(MAKE_C_IDENTIFIER "ORVANE_HAS_${flag}" has_flag)
    check_cxx_compiler_flag("-Werror -f${flag}" ${has_flag})
    if(${has_flag})
        target_compile_options(orvane_warnings INTERFACE -f${flag})
    endif()
endforeach()
target_compile_options(orvane_warnings INTERFACE -ffunction-sections -fdata-sections)

set(ORVANE_SANITIZE "" CACHE STRING "Sanitizers of this build, as -fsanitize takes them; empty for none")
if(ORVANE_SANITIZE)
    target_compile_options(orvane_warnings INTERFACE
        -fsanitize=${ORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(orvane_warnings INTERFACE -fsanitize=${ORVANE_SANITIZE})
endif()
