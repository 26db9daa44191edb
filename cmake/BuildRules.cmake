# SPDX-License-Identifier: MIT
# What every target of ours is built with: warnings, Qt definitions, where includes start.

add_library(qvvisa_build_rules INTERFACE)
target_compile_options(qvvisa_build_rules INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
    # Our forwarders bear the names of the VISA library's functions: a loaded library must not
    # find them.
    -fvisibility=hidden -fvisibility-inlines-hidden)
target_compile_definitions(qvvisa_build_rules INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING QT_STRICT_ITERATORS QT_DEPRECATED_WARNINGS)
configure_file(${CMAKE_CURRENT_LIST_DIR}/Version.h.in ${PROJECT_BINARY_DIR}/generated/Version.h @ONLY)
target_include_directories(qvvisa_build_rules INTERFACE
    ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/generated)

# What is shipped defends itself against the overrun that was overlooked. Sanitizer builds have
# their own means.
set(hardening -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
target_compile_options(qvvisa_build_rules INTERFACE "$<$<CONFIG:Release>:${hardening}>")
if(NOT APPLE)
    target_link_options(qvvisa_build_rules INTERFACE "$<$<CONFIG:Release>:-Wl,-z,relro,-z,now>")
endif()
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
