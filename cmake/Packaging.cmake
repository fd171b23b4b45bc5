# What belongs to an installation beside the programs and their icons, and the archive that holds it all.
# Included before the folders with the programs: install rules run in the order in which they are written.

# The remote keeps its settings beside the executable, silent where it may not write.
install(CODE [[
    if(NOT CMAKE_INSTALL_PREFIX MATCHES "/_CPack_Packages/")
        get_filename_component(programs "${CMAKE_INSTALL_PREFIX}/bin" ABSOLUTE)
        set(existing "${programs}")
        while(NOT EXISTS "${existing}")
            get_filename_component(existing "${existing}" DIRECTORY)
        endwhile()
        execute_process(COMMAND test -w "${existing}" RESULT_VARIABLE closed)
        execute_process(COMMAND id -u OUTPUT_VARIABLE user OUTPUT_STRIP_TRAILING_WHITESPACE)
        string(FIND "${programs}/" "$ENV{HOME}/" at_home)
        if(closed OR (user EQUAL 0 AND NOT at_home EQUAL 0))
            message(WARNING "Corvane keeps what its user sets up in\n  ${programs}/Corvane.ini\n"
                "Users who may not write there lose their changes at the end of each run, without a word. "
                "Better install without root, for one user:\n  cmake --install build-release --prefix ~/.local")
        endif()
    endif()
]])

install(FILES packaging/corvane.desktop DESTINATION share/applications)
install(FILES packaging/corvane.metainfo.xml DESTINATION share/metainfo RENAME example.corvane.corvane.metainfo.xml)
install(FILES packaging/corvane.1 packaging/corvane-server.1 DESTINATION share/man/man1)
install(FILES LICENSE DESTINATION share/doc/corvane)
install(DIRECTORY shows DESTINATION share/doc/corvane FILES_MATCHING PATTERN "*.json")

# A desktop need not have the folder of the programs on its path. An archive does not know where it will lie.
install(CODE [[
    if(NOT CMAKE_INSTALL_PREFIX MATCHES "/_CPack_Packages/|[\"`$%\\]")
        get_filename_component(prefix "${CMAKE_INSTALL_PREFIX}" ABSOLUTE)
        set(entry "$ENV{DESTDIR}${prefix}/share/applications/corvane.desktop")
        file(READ "${entry}" text)
        string(REPLACE "Exec=corvane" "Exec=\"${prefix}/bin/corvane\"" text "${text}")
        file(WRITE "${entry}" "${text}")
    endif()
]])

set(CPACK_GENERATOR TGZ)
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
