# The tests of the page: one for each file of web/tests, in Debian's Chromium.
find_program(CORVANE_CHROMIUM chromium)
if(NOT CORVANE_CHROMIUM)
    message(STATUS "Tests of the page are LEFT OUT: chromium is missing (cmake/install-packages test)")
    return()
endif()

set(folder ${PROJECT_BINARY_DIR}/web-tests)
corvane_web_copy(${folder} ON)
add_custom_target(web_tests ALL DEPENDS ${folder}/copied corvane corvane-pdf corvane-web)

file(GLOB_RECURSE tests CONFIGURE_DEPENDS RELATIVE ${CORVANE_WEB_SOURCE} ${CORVANE_WEB_SOURCE}/tests/*.test.mjs)
foreach(test ${tests})
    string(REGEX REPLACE "^tests/(.*)\\.test\\.mjs$" "Web.\\1" name ${test})
    string(REPLACE "/" "." name ${name})
    add_test(NAME ${name} COMMAND ${CORVANE_NODE} --test ${test} WORKING_DIRECTORY ${folder})
    list(APPEND names ${name})
endforeach()
add_test(NAME Web.types COMMAND ${CORVANE_NPM} run check WORKING_DIRECTORY ${folder})
# A browser takes a core to itself, and is slow to start beside others.
set_tests_properties(${names} PROPERTIES
    TIMEOUT 300
    PROCESSORS 2
    ENVIRONMENT "CORVANE_PROGRAM=$<TARGET_FILE:corvane>;CORVANE_CHROMIUM=${CORVANE_CHROMIUM};CORVANE_EXAMPLES=${PROJECT_SOURCE_DIR}/examples")
