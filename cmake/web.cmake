# The page of `serve`: its server, and the bundle that is compiled into it.
set(CORVANE_WEB AUTO CACHE STRING
    "The command serve: ON, OFF, or AUTO, where its packages are installed (cmake/install-packages web) and npm's registry is reached")

if(CORVANE_WEB)
    find_path(CORVANE_HTTPLIB_INCLUDE httplib.h)
    find_library(CORVANE_HTTPLIB_LIBRARY cpp-httplib)
    find_program(CORVANE_NODE node)
    find_program(CORVANE_NPM npm)
endif()
set(CORVANE_WITH_WEB OFF)
if(CORVANE_HTTPLIB_INCLUDE AND CORVANE_HTTPLIB_LIBRARY AND CORVANE_NODE AND CORVANE_NPM)
    set(CORVANE_WITH_WEB ON)
elseif(CORVANE_WEB AND NOT CORVANE_WEB STREQUAL "AUTO")
    message(FATAL_ERROR "CORVANE_WEB is ON, and cpp-httplib, node or npm is missing: cmake/install-packages web")
endif()
if(NOT CORVANE_WEB OR NOT CORVANE_WITH_WEB)
    set(CORVANE_WITH_WEB OFF)
    return()
endif()

# Debian builds the library with these, and they change what its header declares.
find_package(Threads REQUIRED)
add_library(corvane_httplib INTERFACE)
target_include_directories(corvane_httplib SYSTEM INTERFACE ${CORVANE_HTTPLIB_INCLUDE})
target_compile_definitions(corvane_httplib INTERFACE
    CPPHTTPLIB_OPENSSL_SUPPORT CPPHTTPLIB_ZLIB_SUPPORT CPPHTTPLIB_BROTLI_SUPPORT)
target_link_libraries(corvane_httplib INTERFACE ${CORVANE_HTTPLIB_LIBRARY} Threads::Threads)

# What npm installs lies in the build folder with a copy of the sources; nothing is written among those.
set(CORVANE_WEB_SOURCE ${PROJECT_SOURCE_DIR}/web)
set(CORVANE_WEB_PACKAGES
    ${CORVANE_WEB_SOURCE}/package.json ${CORVANE_WEB_SOURCE}/package-lock.json ${CORVANE_WEB_SOURCE}/.npmrc)
# Scripts of packages are not run: esbuild's program comes as a package of its own.
set(CORVANE_NPM_INSTALL ${CORVANE_NPM} ci --ignore-scripts --loglevel=error)

# corvane_web_copy(FOLDER TESTS): makes FOLDER/copied, by which FOLDER has the sources of the page and what
# they need; with their tests, and what those need, where TESTS is ON.
function(corvane_web_copy folder tests)
    set(source ${CORVANE_WEB_SOURCE})
    set(packages ${CORVANE_WEB_PACKAGES})
    set(parts ${source}/build.mjs ${source}/index.html ${source}/tsconfig.json)
    set(rooms src style)
    set(leave --omit=dev)
    if(tests)
        list(APPEND rooms tests)
        set(leave)
    endif()
    set(copying)
    set(sources)
    foreach(room ${rooms})
        file(GLOB_RECURSE found CONFIGURE_DEPENDS ${source}/${room}/*)
        list(APPEND sources ${found})
        list(APPEND copying COMMAND ${CMAKE_COMMAND} -E rm -rf ${folder}/${room}
            COMMAND ${CMAKE_COMMAND} -E copy_directory ${source}/${room} ${folder}/${room})
    endforeach()
    add_custom_command(
        OUTPUT ${folder}/installed
        COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
        COMMAND ${CMAKE_COMMAND} -E copy ${packages} ${folder}
        COMMAND ${CMAKE_COMMAND} -E chdir ${folder} ${CORVANE_NPM_INSTALL} ${leave}
        COMMAND ${CMAKE_COMMAND} -E touch ${folder}/installed
        DEPENDS ${packages}
        COMMENT "Installing npm packages into ${folder}"
        VERBATIM)
    add_custom_command(
        OUTPUT ${folder}/copied
        ${copying}
        COMMAND ${CMAKE_COMMAND} -E copy ${parts} ${folder}
        COMMAND ${CMAKE_COMMAND} -E touch ${folder}/copied
        DEPENDS ${sources} ${parts} ${folder}/installed
        VERBATIM)
endfunction()

set(folder ${PROJECT_BINARY_DIR}/web)

# A machine may have the programs and not reach the registry. What a bad line lost is asked for again.
if(CORVANE_WEB STREQUAL "AUTO" AND NOT EXISTS ${folder}/installed)
    file(COPY ${CORVANE_WEB_PACKAGES} DESTINATION ${folder})
    execute_process(COMMAND ${CORVANE_NPM_INSTALL} --omit=dev --fetch-retries=2 --fetch-retry-mintimeout=1000
        --fetch-retry-maxtimeout=2000 WORKING_DIRECTORY ${folder}
        RESULT_VARIABLE failed OUTPUT_QUIET ERROR_VARIABLE said)
    if(failed)
        message(WARNING "The page in the browser and its tests are LEFT OUT: npm did not install what it needs\n${said}")
        set(CORVANE_WITH_WEB OFF)
        return()
    endif()
    file(TOUCH ${folder}/installed)
endif()
set(CORVANE_WEB_BUNDLE ${PROJECT_BINARY_DIR}/web-bundle)
set(CORVANE_WEB_FILES ${CORVANE_WEB_BUNDLE}/index.html ${CORVANE_WEB_BUNDLE}/app.js ${CORVANE_WEB_BUNDLE}/app.css)
corvane_web_copy(${folder} OFF)
add_custom_command(
    OUTPUT ${CORVANE_WEB_FILES}
    COMMAND ${CORVANE_NODE} ${folder}/build.mjs ${CORVANE_WEB_BUNDLE}
    DEPENDS ${folder}/copied
    COMMENT "Bundling the page"
    VERBATIM)
add_custom_target(corvane_web_bundle DEPENDS ${CORVANE_WEB_FILES})

# corvane_embed_page(TARGET): compiles the bundle into a target.
function(corvane_embed_page target)
    set(made ${CMAKE_CURRENT_BINARY_DIR}/embedded_page.cpp)
    set(script ${PROJECT_SOURCE_DIR}/cmake/embed-files.cmake)
    add_custom_command(
        OUTPUT ${made}
        COMMAND ${CMAKE_COMMAND} -D OUTPUT=${made} -D FOLDER=${CORVANE_WEB_BUNDLE} -P ${script}
        DEPENDS ${CORVANE_WEB_FILES} ${script}
        VERBATIM)
    target_sources(${target} PRIVATE ${made})
    add_dependencies(${target} corvane_web_bundle)
endfunction()
