# Compiles resources/translations/corvane_LANGUAGE.ts, the program's texts, and qt_LANGUAGE.ts, those of Qt that it shows,
# to one LANGUAGE.qm. Sets <out> to their entries in the resource collection and <compiled> to the files.
function(corvane_translations out compiled)
    set(source ${CMAKE_SOURCE_DIR}/resources/translations)
    file(GLOB languages RELATIVE ${source} CONFIGURE_DEPENDS ${source}/corvane_*.ts)
    set(entries)
    set(files)
    foreach(language IN LISTS languages)
        string(REGEX REPLACE "corvane_(.*)\\.ts" "\\1" language ${language})
        set(texts ${source}/corvane_${language}.ts ${source}/qt_${language}.ts)
        set(qm ${CMAKE_BINARY_DIR}/translations/${language}.qm)
        add_custom_command(
            OUTPUT ${qm}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/translations
            COMMAND translations ${qm} ${texts}
            DEPENDS translations ${texts}
            COMMENT "Compiling the translation ${language}"
            VERBATIM)
        list(APPEND files ${qm})
        string(APPEND entries "    <file alias=\"Translations/${language}.qm\">${qm}</file>\n")
    endforeach()
    set(${out} "${entries}" PARENT_SCOPE)
    set(${compiled} ${files} PARENT_SCOPE)
endfunction()
