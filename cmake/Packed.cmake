# Run by CPack over what it packed. The archive holds its files in the order in which the disk had them: in that of
# their names, equal sources give an equal archive.
if(CPACK_GENERATOR STREQUAL TGZ)
    execute_process(
        COMMAND tar --sort=name --owner=0 --group=0 --numeric-owner -C ${CPACK_TEMPORARY_DIRECTORY}/..
            -cf - ${CPACK_PACKAGE_FILE_NAME}
        COMMAND gzip -9n
        OUTPUT_FILE ${CPACK_PACKAGE_FILES}
        COMMAND_ERROR_IS_FATAL ANY)
endif()
