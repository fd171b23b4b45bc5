# Renders every SVG below resources/artwork to a PNG at 1x and at 2x (Name@2x.png) and writes the resource
# collection that holds them, so that the repository keeps text and the program keeps pixels.

find_program(RSVG_CONVERT rsvg-convert REQUIRED)
# Takes PNG's filters off drawings, which saves the program a quarter of the time to read them.
find_program(OPTIPNG optipng REQUIRED)

# Sets <out> to the path of a generated corvane.qrc; <pictures> to the files it needs to be built first. The colour
# wheel is no drawing: the target `colorwheel` computes it.
function(corvane_artwork out pictures)
    set(source ${CMAKE_SOURCE_DIR}/resources/artwork)
    set(target ${CMAKE_BINARY_DIR}/artwork)
    file(GLOB_RECURSE drawings RELATIVE ${source} CONFIGURE_DEPENDS ${source}/*.svg)
    set(rendered)
    set(entries)
    foreach(drawing IN LISTS drawings)
        string(REGEX REPLACE "\\.svg$" "" name ${drawing})
        set(png ${target}/${name}.png)
        set(png2x ${target}/${name}@2x.png)
        get_filename_component(folder ${png} DIRECTORY)
        add_custom_command(
            OUTPUT ${png} ${png2x}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
            COMMAND ${RSVG_CONVERT} -o ${png} ${source}/${drawing}
            COMMAND ${RSVG_CONVERT} --zoom 2 -o ${png2x} ${source}/${drawing}
            COMMAND ${OPTIPNG} -quiet -force -nb -nc -np -f0 -zc9 -zm8 -zs0 ${png} ${png2x}
            DEPENDS ${source}/${drawing}
            COMMENT "Rendering ${drawing}"
            VERBATIM)
        list(APPEND rendered ${png} ${png2x})
        string(APPEND entries "    <file alias=\"Images/${name}.png\">${png}</file>\n")
        string(APPEND entries "    <file alias=\"Images/${name}@2x.png\">${png2x}</file>\n")
    endforeach()
    foreach(scale 1 2)
        set(name ColorPicker)
        if(scale GREATER 1)
            string(APPEND name "@${scale}x")
        endif()
        set(wheel ${target}/${name}.png)
        add_custom_command(OUTPUT ${wheel} COMMAND colorwheel ${wheel} ${scale} DEPENDS colorwheel VERBATIM)
        list(APPEND rendered ${wheel})
        string(APPEND entries "    <file alias=\"Images/${name}.png\">${wheel}</file>
")
    endforeach()
    file(GLOB brandings RELATIVE ${CMAKE_SOURCE_DIR}/resources/branding CONFIGURE_DEPENDS
        ${CMAKE_SOURCE_DIR}/resources/branding/*.json)
    foreach(branding IN LISTS brandings)
        string(APPEND entries
            "    <file alias=\"Branding/${branding}\">${CMAKE_SOURCE_DIR}/resources/branding/${branding}</file>\n")
    endforeach()
    corvane_translations(translations compiled)
    string(APPEND entries "${translations}")
    list(APPEND rendered ${compiled})
    file(CONFIGURE OUTPUT ${target}/corvane.qrc
        CONTENT "<RCC>\n  <qresource prefix=\"/Corvane\">\n@entries@  </qresource>\n</RCC>\n" @ONLY)
    set(${out} ${target}/corvane.qrc PARENT_SCOPE)
    set(${pictures} ${rendered} PARENT_SCOPE)
endfunction()

# Renders the application's icon for desktops, 16 to 256 pixels, and has it installed beside the drawing itself.
function(corvane_application_icons)
    set(drawing ${CMAKE_SOURCE_DIR}/resources/artwork/AppIcon.svg)
    set(icons)
    foreach(size 16 22 24 32 48 64 128 256)
        set(icon ${CMAKE_BINARY_DIR}/icons/${size}x${size}/corvane.png)
        add_custom_command(
            OUTPUT ${icon}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/icons/${size}x${size}
            COMMAND ${RSVG_CONVERT} --width ${size} --height ${size} -o ${icon} ${drawing}
            DEPENDS ${drawing}
            VERBATIM)
        list(APPEND icons ${icon})
        install(FILES ${icon} DESTINATION share/icons/hicolor/${size}x${size}/apps)
    endforeach()
    add_custom_target(application-icons ALL DEPENDS ${icons})
    install(FILES ${drawing} DESTINATION share/icons/hicolor/scalable/apps RENAME corvane.svg)
endfunction()

# `cmake --build build --target contact-sheet`: every picture with its name, to look at.
function(corvane_contact_sheet)
    add_custom_target(contact-sheet
        COMMAND ${CMAKE_SOURCE_DIR}/scripts/contact-sheet ${CMAKE_BINARY_DIR}/artwork
            ${CMAKE_BINARY_DIR}/contact-sheet.png
        DEPENDS ${ARGN}
        VERBATIM)
endfunction()
