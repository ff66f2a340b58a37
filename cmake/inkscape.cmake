# The extensions for Inkscape: a list of their files, and a package that Inkscape's manager of extensions takes.
file(GLOB CORVANE_INKSCAPE_FILES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/inkscape/*.py ${PROJECT_SOURCE_DIR}/inkscape/*.inx)

set(package ${PROJECT_BINARY_DIR}/corvane-inkscape.zip)
set(folder ${PROJECT_BINARY_DIR}/inkscape-package)
add_custom_command(
    OUTPUT ${package}
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${folder} ${package}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}/corvane
    COMMAND ${CMAKE_COMMAND} -E copy ${CORVANE_INKSCAPE_FILES} ${folder}/corvane
    COMMAND ${CMAKE_COMMAND} -E chdir ${folder} ${CMAKE_COMMAND} -E tar cf ${package} --format=zip corvane
    DEPENDS ${CORVANE_INKSCAPE_FILES}
    VERBATIM)
add_custom_target(corvane_inkscape_package ALL DEPENDS ${package})

# corvane_embed_inkscape(TARGET TEMPLATE): compiles the files into a target, by a source made from a template.
function(corvane_embed_inkscape target template)
    set(rows)
    foreach(file ${CORVANE_INKSCAPE_FILES})
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
        get_filename_component(name ${file} NAME)
        file(READ ${file} text)
        string(APPEND rows "    ExtensionFile{\"${name}\", R\"~~~~(${text})~~~~\"},\n")
    endforeach()
    get_filename_component(name ${template} NAME_WLE)
    configure_file(${template} ${CMAKE_CURRENT_BINARY_DIR}/${name} @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${name})
endfunction()
