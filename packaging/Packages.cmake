# SPDX-License-Identifier: MIT
# The packages, by CPack: one for each component on Debian and its relatives, a disk image on macOS.
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
# No package of ours brings another: a VISA library is installed on request only.
set(CPACK_COMPONENTS_ALL program simulator)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME qvvisaconfigure)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SUGGESTS qvvisa-simulator)
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "${PROJECT_DESCRIPTION}
Edits the configuration file of a VISA library: aliases for instruments, the
settings that serial ports start with, and the provider ID.
.
It lists the instruments that the machine's VISA library finds and composes
VISA resource strings. It works without a VISA library too.")

if(TARGET qvvisa)
    list(APPEND CPACK_COMPONENTS_ALL command)
    string(PREPEND CPACK_DEBIAN_PROGRAM_PACKAGE_SUGGESTS "qvvisa, ")
    set(CPACK_DEBIAN_COMMAND_PACKAGE_NAME qvvisa)
    set(CPACK_DEBIAN_COMMAND_DESCRIPTION "command line for VISA configuration files
Shows, checks and edits the configuration file of a VISA library, lists the
instruments that the library finds, and examines why one is missing.
.
It runs without a display.")
endif()

if(TARGET qvvisa_finder)
    list(APPEND CPACK_COMPONENTS_ALL finder)
    set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS qvvisa-finder)
    set(CPACK_DEBIAN_COMMAND_PACKAGE_RECOMMENDS qvvisa-finder)
    set(CPACK_DEBIAN_FINDER_PACKAGE_NAME qvvisa-finder)
    set(CPACK_DEBIAN_FINDER_PACKAGE_ENHANCES "qvvisaconfigure, qvvisa")
    set(CPACK_DEBIAN_FINDER_DESCRIPTION "VISA library that lists instruments
Finds instruments on the network, USB and serial ports, for machines without
another VISA library. It lists them, but does not talk to them.
.
It is installed outside the loader's search path, so it never shadows another
VISA library.")
endif()

set(CPACK_DEBIAN_SIMULATOR_PACKAGE_NAME qvvisa-simulator)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_ENHANCES qvvisaconfigure)
set(CPACK_DEBIAN_SIMULATOR_DESCRIPTION "VISA library with simulated instruments
Reports the instruments that a text file describes, to try and to test VISA
programs without hardware.
.
It is installed outside the loader's search path, so it never shadows another
VISA library: a program uses it only when LD_LIBRARY_PATH names its folder.")

include(CPack)

# CPack's own target, package, would build the tests as well. The times in the packages are those
# of the release, so that the same sources give the same packages.
set(programs)
foreach(target IN ITEMS qvvisa qvvisa_finder)
    if(TARGET ${target})
        list(APPEND programs ${target})
    endif()
endforeach()
add_custom_target(packages USES_TERMINAL
    COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=${QVVISA_RELEASE_SECONDS}
        ${CMAKE_CPACK_COMMAND} --config ${PROJECT_BINARY_DIR}/CPackConfig.cmake
    DEPENDS QvVisaConfigure qvvisa_simulator qvvisa_documents ${programs})
