# What is installed, where, and in which package: "library", "board" (the stock one, with
# the default board's data and the simulators), "shell" and "development".
include(CMakePackageConfigHelpers)

set(data ${CMAKE_INSTALL_DATADIR}/morva-diags)

# The library, and what a board is written with.
install(TARGETS morva-diags EXPORT morva-diags-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
install(TARGETS morva_board_kit EXPORT morva-diags-targets COMPONENT development)
install(CODE "
    if(CMAKE_INSTALL_DO_STRIP)
        execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-debug --enable-deterministic-archives
            \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/$<TARGET_FILE_NAME:morva_board_kit>\"
            COMMAND_ERROR_IS_FATAL ANY)
    endif()" COMPONENT development)
# Without what reads the tables of memory modules: that needs the headers of libxml2.
install(DIRECTORY framework i2c io t2080_mdio decode
    DESTINATION ${MORVA_INSTALL_INCLUDEDIR} COMPONENT development
    FILES_MATCHING PATTERN "*.h"
    PATTERN "dimm_table_*" EXCLUDE PATTERN "*_xml_parser*" EXCLUDE)
install(DIRECTORY boards/root_bus boards/linux boards/chips
    DESTINATION ${MORVA_INSTALL_INCLUDEDIR}/boards COMPONENT development
    FILES_MATCHING PATTERN "*.h")

set(config ${CMAKE_INSTALL_LIBDIR}/cmake/morva-diags)
install(EXPORT morva-diags-targets NAMESPACE morva:: DESTINATION ${config} COMPONENT development)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/morva-diags-config-version.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES cmake/morva-diags-config.cmake ${CMAKE_BINARY_DIR}/morva-diags-config-version.cmake
    DESTINATION ${config} COMPONENT development)

cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR
    BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
    OUTPUT_VARIABLE MORVA_INCLUDEDIR_FROM_PKGCONFIG)
configure_file(cmake/morva-diags.pc.in ${CMAKE_BINARY_DIR}/morva-diags.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/morva-diags.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libmorva-diags-dev
    COMPONENT development)

# The stock board and the simulators.
set_target_properties(morva-board PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS morva-board morva-i2c-sim morva-i2c-sim-object morva-mdio-sim morva-mdio-sim-object
    COMPONENT board)
install(FILES ${MORVA_QUILLBANK_DTB} DESTINATION ${data}/quillbank COMPONENT board)
install(DIRECTORY ${MORVA_QUILLBANK_IMAGES} DESTINATION ${data}/quillbank COMPONENT board)
# Beside the blob, and where prog-param-eeprom looks when it is given no file: with the
# prefix /usr that is /usr/lib/morva/diags/bin/xml, on every machine.
install(DIRECTORY ${MORVA_QUILLBANK_XML} DESTINATION ${data}/quillbank COMPONENT board)
install(DIRECTORY ${MORVA_QUILLBANK_XML} DESTINATION lib/morva/diags/bin COMPONENT board)

# The programs that work on a board.
install(TARGETS diagsh diag_mdio_util COMPONENT shell)
install(FILES docs/decode.schema.json docs/diagsh.schema.json docs/dimm_table.rng
    DESTINATION ${data} COMPONENT shell)
install(FILES completions/diagsh.bash RENAME diagsh
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT shell)

# Man pages, each in the package of its program, compressed as Debian has them.
find_program(MORVA_GZIP gzip REQUIRED)
function(morva_install_man_pages component)
    foreach(page ${ARGN})
        set(compressed ${CMAKE_BINARY_DIR}/man/${page}.gz)
        add_custom_command(
            OUTPUT ${compressed}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/man
            COMMAND ${MORVA_GZIP} -9nc ${CMAKE_SOURCE_DIR}/docs/${page} > ${compressed}
            DEPENDS docs/${page}
            VERBATIM)
        install(FILES ${compressed} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
        list(APPEND all ${compressed})
    endforeach()
    add_custom_target(${component}-man-pages ALL DEPENDS ${all})
endfunction()
morva_install_man_pages(shell diagsh.1 diag_mdio_util.1)
morva_install_man_pages(board morva-i2c-sim.1 morva-mdio-sim.1)
