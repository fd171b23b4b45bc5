# What belongs to an installation beside the programs and their icons, the archive that holds it all, and a Debian
# package for each program.
# Included before the folders with the programs: install rules run in the order in which they are written.

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME corvane)
install(FILES packaging/corvane.desktop DESTINATION share/applications)
install(FILES packaging/corvane.metainfo.xml DESTINATION share/metainfo RENAME example.corvane.corvane.metainfo.xml)
install(FILES packaging/corvane.1 DESTINATION share/man/man1)
install(FILES packaging/corvane-server.1 DESTINATION share/man/man1 COMPONENT corvane-server)
install(FILES LICENSE DESTINATION share/doc/corvane)
install(DIRECTORY shows DESTINATION share/doc/corvane COMPONENT corvane-server FILES_MATCHING PATTERN "*.json")
if(EXISTS ${CMAKE_SOURCE_DIR}/packaging/corvane-server.service)
    install(FILES packaging/corvane-server.service DESTINATION lib/systemd/system COMPONENT corvane-server)
endif()

# A desktop need not have the folder of the programs on its path. An archive does not know where it will lie, and a
# package lies where every desktop looks.
install(CODE [[
    if(NOT CMAKE_INSTALL_PREFIX MATCHES "^/usr$|/_CPack_Packages/|[\"`$%\\]")
        get_filename_component(prefix "${CMAKE_INSTALL_PREFIX}" ABSOLUTE)
        set(entry "$ENV{DESTDIR}${prefix}/share/applications/corvane.desktop")
        file(READ "${entry}" text)
        string(REPLACE "Exec=corvane" "Exec=\"${prefix}/bin/corvane\"" text "${text}")
        file(WRITE "${entry}" "${text}")
    endif()
]])

set(CPACK_GENERATOR TGZ DEB)
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_CONTACT "The Corvane founders <founders@corvane.example>")
set(CPACK_PACKAGE_HOMEPAGE_URL https://corvane.example/)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL corvane corvane-server)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
foreach(component CORVANE CORVANE-SERVER)
    string(TOLOWER ${component} package)
    set(CPACK_DEBIAN_${component}_PACKAGE_NAME ${package})
endforeach()
set(CPACK_DEBIAN_CORVANE_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_CORVANE_PACKAGE_SUGGESTS "corvane-server, qtwayland5")
set(CPACK_COMPONENT_CORVANE_DESCRIPTION "remote control for a networked DMX lighting interface
One small window on the local network switches the scenes and programs of a
lighting interface with a click, picks a colour on a wheel and sets any of
32 x 512 channels.")
set(CPACK_DEBIAN_CORVANE-SERVER_PACKAGE_SECTION net)
set(CPACK_DEBIAN_CORVANE-SERVER_PACKAGE_SUGGESTS corvane)
set(CPACK_COMPONENT_CORVANE-SERVER_DESCRIPTION "plays a light show on lamps over streaming ACN
Answers the remote control corvane, and sends the levels of its show to DMX
gateways, consoles and visualisers as streaming ACN (E1.31). Without lamps it
is a partner to rehearse with.")
# What only a package has is written between installing and packing; the archive is sorted afterwards.
set(CPACK_CORVANE_SOURCE ${CMAKE_SOURCE_DIR})
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/cmake/Staged.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/cmake/Packed.cmake)
include(CPack)
