# Lets the run build look for the packages of `install-packages run` and for no other:
#
#     cmake --preset run -B FOLDER -D CMAKE_PROJECT_TOP_LEVEL_INCLUDES=cmake/bare.cmake

# As on a machine without the packages of the page.
set(CORVANE_WEB OFF)

# Looked for in case there are tests; missing, as on a bare machine.
foreach(package GTest TIFF JPEG)
    set(CMAKE_DISABLE_FIND_PACKAGE_${package} ON)
endforeach()

macro(corvane_refuse_package method name)
    if(NOT "${name}" MATCHES "^(ZLIB|Freetype|pugixml)$")
        message(FATAL_ERROR "${name} is not among the packages that install-packages installs for ./run")
    endif()
endmacro()
cmake_language(SET_DEPENDENCY_PROVIDER corvane_refuse_package SUPPORTED_METHODS FIND_PACKAGE)
