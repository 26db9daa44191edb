# SPDX-License-Identifier: MIT
# The packages, by CPack: two for Debian and its relatives, a disk image on macOS.
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_NAME qvvisaconfigure)
set(CPACK_PACKAGE_VENDOR Quorvane)
set(CPACK_PACKAGE_CONTACT "QvVisaConfigure maintainers <maintainers@quorvane.com>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)

if(APPLE)
    set(CPACK_GENERATOR DragNDrop)
    include(CPack)
    return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL program simulator)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
    GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# Or it would come before the first line of each description.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME qvvisaconfigure)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SUGGESTS qvvisa-simulator)
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "${PROJECT_DESCRIPTION}
Edits the configuration file of a VISA library: aliases for instruments, the
settings that serial ports start with, and the provider ID.
.
It lists the instruments that the machine's VISA library finds and composes
VISA resource strings. It works without a VISA library too.")

set(CPACK_DEBIAN_SIMULATOR_PACKAGE_NAME qvvisa-simulator)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_ENHANCES qvvisaconfigure)
set(CPACK_DEBIAN_SIMULATOR_DESCRIPTION "stand-in VISA library without instruments
Reports the instruments that a text file describes, to try and to test VISA
programs without hardware.
.
It lies in a folder of its own and takes no real VISA library's place: a
program uses it only when LD_LIBRARY_PATH names that folder.")

include(CPack)

# CPack's own target, package, would build the tests as well.
add_custom_target(packages USES_TERMINAL
    COMMAND ${CMAKE_CPACK_COMMAND} --config ${PROJECT_BINARY_DIR}/CPackConfig.cmake
    DEPENDS QvVisaConfigure qvvisa_simulator qvvisa_compressed_files)
