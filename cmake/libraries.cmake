# System libraries that have no CMake package of their own, each as a target corvane::NAME.

# corvane_system_library(NAME HEADER LIBRARY [SUFFIX...]): found once; SUFFIX are folders of the header.
function(corvane_system_library name header library)
    string(TOUPPER ${name} prefix)
    find_path(${prefix}_INCLUDE ${header} PATH_SUFFIXES ${ARGN} REQUIRED)
    find_library(${prefix}_LIBRARY ${library} REQUIRED)
    add_library(corvane_system_${name} INTERFACE)
    add_library(corvane::${name} ALIAS corvane_system_${name})
    target_link_libraries(corvane_system_${name} INTERFACE ${${prefix}_LIBRARY})
    target_include_directories(corvane_system_${name} SYSTEM INTERFACE ${${prefix}_INCLUDE})
endfunction()

corvane_system_library(fontconfig fontconfig/fontconfig.h fontconfig)
corvane_system_library(harfbuzz hb.h harfbuzz harfbuzz)
corvane_system_library(harfbuzz_subset hb-subset.h harfbuzz-subset harfbuzz)
corvane_system_library(fribidi fribidi/fribidi.h fribidi)
corvane_system_library(openjpeg openjpeg.h openjp2 openjpeg-2.5 openjpeg-2.6 openjpeg-2.4)
corvane_system_library(jbig2dec jbig2.h jbig2dec)
corvane_system_library(lcms2 lcms2.h lcms2)
corvane_system_library(spng spng.h spng)
corvane_system_library(isal isa-l.h isal)
corvane_system_library(nettle nettle/aes.h nettle)
corvane_system_library(unistring uninorm.h unistring)
