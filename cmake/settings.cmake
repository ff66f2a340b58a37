# Flags that hold for every target, and the one way to declare a folder's library.

add_compile_options(
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor
    -Wcast-qual -Woverloaded-virtual -Wimplicit-fallthrough
    # Fixed-point results are defined by single-precision steps: no fused multiply-add.
    -ffp-contract=off)
if(CORVANE_WERROR)
    add_compile_options(-Werror)
endif()
if(CORVANE_SANITIZE)
    add_compile_options(-fsanitize=${CORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${CORVANE_SANITIZE})
endif()
if(CORVANE_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()
if(CORVANE_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# corvane_library(NAME [ROOMS folder...] [USES lib...]): a static library of every source of the calling
# folder and of the rooms in it.
function(corvane_library name)
    cmake_parse_arguments(ARG "" "" "ROOMS;USES" ${ARGN})
    set(patterns ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    foreach(room ${ARG_ROOMS})
        list(APPEND patterns ${CMAKE_CURRENT_SOURCE_DIR}/${room}/*.cpp)
    endforeach()
    file(GLOB sources CONFIGURE_DEPENDS ${patterns})
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${ARG_USES})
endfunction()
