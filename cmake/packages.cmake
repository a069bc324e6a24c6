# Debian packages, made with cpack: scripts/package.
set(MORVA_PACKAGE_CONTACT "morva-diags <morva-diags@localhost>" CACHE STRING
    "Who looks after the packages: name and address")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME morva-diags)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT ${MORVA_PACKAGE_CONTACT})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library board shell development)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# What the binaries need of Debian is read from them; of each other, the packages need the
# version that they were built with.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libmorva-diags${MORVA_ABI})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "hardware diagnostics, device objects
Device objects for hardware diagnostics: I2C buses, multiplexers, slaves and
EEPROMs, register chips, I/O ports and MDIO. Boards for diagsh are built on it.")
# For packages of other boards.
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/shlibs @ONLY
    CONTENT "libmorva-diags @MORVA_ABI@ libmorva-diags@MORVA_ABI@ (>= @PROJECT_VERSION@)\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/shlibs)

set(CPACK_DEBIAN_BOARD_PACKAGE_NAME morva-board)
set(CPACK_COMPONENT_BOARD_DEPENDS library)
set(CPACK_COMPONENT_BOARD_DESCRIPTION "hardware diagnostics, boards that a device tree describes
The board that diagsh loads when it is given no other, built as a device tree
describes it, real or simulated. With the description, EEPROM images and tables
of memory modules of the default board, and simulated drivers for programs that
open them.")

set(CPACK_DEBIAN_SHELL_PACKAGE_NAME diagsh)
set(CPACK_COMPONENT_SHELL_DEPENDS board)
set(CPACK_DEBIAN_SHELL_PACKAGE_SUGGESTS "i2c-tools, bash-completion")
set(CPACK_COMPONENT_SHELL_DESCRIPTION "hardware diagnostics, shell
A prompt, or scripts, on a board's tree of devices: I2C buses and EEPROMs are
probed, read, written and tested by hand or in production. With diag_mdio_util,
for registers of Ethernet PHYs.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libmorva-diags-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "diagsh (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "hardware diagnostics, development files
What a board for diagsh is written with: headers, root buses, classes for real
chips, and an example. Found by CMake and by pkg-config.")

include(CPack)
