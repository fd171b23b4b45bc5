# Run by CPack over what is about to be packed. A package gets what Debian wants of each: licence, changelog and manual
# pages in its forms. Everything gets one time, so that equal sources give equal files.

set(now "$ENV{SOURCE_DATE_EPOCH}")
if(now STREQUAL "")
    string(TIMESTAMP now %s UTC)
endif()

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

if(CPACK_GENERATOR STREQUAL DEB)
    foreach(package ${CPACK_COMPONENTS_ALL})
        set(share ${CPACK_TEMPORARY_DIRECTORY}/${package}/usr/share)
        set(doc ${share}/doc/${package})
        if(EXISTS ${share}/doc/corvane/shows)
            file(RENAME ${share}/doc/corvane ${doc})
            file(RENAME ${doc}/shows ${doc}/examples)
        endif()
        file(REMOVE ${doc}/LICENSE)
        file(READ ${CPACK_CORVANE_SOURCE}/LICENSE licence)
        string(REGEX REPLACE "^MIT License\n\n(Copyright[^\n]*)\n\n" "" licence "${licence}")
        string(REGEX REPLACE "\n\n" "\n.\n" licence "${licence}")
        string(REGEX REPLACE "\n" "\n " licence "${licence}")
        file(WRITE ${doc}/copyright
            "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\n\n"
            "Files: *\nCopyright: 2026 The Corvane founders\nLicense: Expat\n ${licence}\n")
        execute_process(COMMAND date -R -u -d @${now} OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE)
        file(WRITE ${doc}/changelog
            "${package} (${CPACK_PACKAGE_VERSION}) stable; urgency=medium\n\n"
            "  * What is new stands in CHANGELOG.md of the source.\n\n"
            " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
        file(GLOB pages ${share}/man/man1/*.1)
        run(gzip -9n ${doc}/changelog ${pages})
    endforeach()
endif()
run(find ${CPACK_TEMPORARY_DIRECTORY} -exec touch --no-dereference --date=@${now} {} +)
run(chmod -R u=rwX,go=rX ${CPACK_TEMPORARY_DIRECTORY})
