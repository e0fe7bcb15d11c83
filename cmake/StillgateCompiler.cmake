# The compiler, its warnings and the sanitizers, the same for every target of ours.

if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang" OR CMAKE_CXX_COMPILER_VERSION VERSION_LESS 19)
    message(FATAL_ERROR
        "Stillgate is built with clang 19 or later: GCC 12 miscompiles ordinary co_await expressions "
        "into double frees. Use './dev build', or configure with a preset of CMakePresets.json.")
endif()

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_link_options(-fuse-ld=lld-19)

set(STILLGATE_SANITIZERS "" CACHE STRING "Sanitizers for everything built, as for -fsanitize=")
if(STILLGATE_SANITIZERS)
    add_compile_options(-fsanitize=${STILLGATE_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${STILLGATE_SANITIZERS})
endif()

# Warnings for our own code. A designated initializer leaves out members on purpose: they have defaults.
add_library(stillgate_warnings INTERFACE)
target_compile_options(stillgate_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wno-missing-designated-field-initializers)

# Qt's lower-case macros would take "signals" and "emit" from us.
add_compile_definitions(QT_NO_KEYWORDS)
