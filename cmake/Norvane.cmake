# How every target of the project is built: one place for flags, one function per kind of target.

# Fast enough to simulate years, with assertions and lines for a debugger.
set(CMAKE_CXX_FLAGS_DEV "-O2 -g1 -D_GLIBCXX_ASSERTIONS")

add_library(norvane_options INTERFACE)
target_compile_options(norvane_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
    -Woverloaded-virtual -Werror)
# GCC 12 sees uninitialized members in every optimized move of a std::variant that holds strings or vectors, and
# overlapping copies in string concatenations. The last option is for clang-tidy, which does not know the first.
target_compile_options(norvane_options INTERFACE -Wno-maybe-uninitialized -Wno-restrict -Wno-unknown-warning-option)
target_include_directories(norvane_options INTERFACE ${PROJECT_SOURCE_DIR})
# Qt libraries reach a program only if it uses them: the command-line tools start in a millisecond.
target_link_options(norvane_options INTERFACE -Wl,--as-needed)
if(NORVANE_SANITIZERS)
    target_compile_options(norvane_options INTERFACE -fsanitize=${NORVANE_SANITIZERS} -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    target_link_options(norvane_options INTERFACE -fsanitize=${NORVANE_SANITIZERS})
endif()

# norvane_library(NAME SOURCES … LINKS …)
function(norvane_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC norvane_options ${ARG_LINKS})
endfunction()

# norvane_qt_library(NAME SOURCES … LINKS …): one with objects of Qt.
function(norvane_qt_library name)
    norvane_library(${name} ${ARGN})
    target_link_libraries(${name} PUBLIC Qt6::Core)
    target_compile_definitions(${name} PUBLIC QT_NO_KEYWORDS)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
endfunction()

# norvane_views(NAME URI uri MODULES … SOURCES … VIEWS … LINKS …): one with views, which are the module `uri` for other
# views. MODULES: those whose types the sources show to views.
function(norvane_views name)
    cmake_parse_arguments(ARG "" "URI" "SOURCES;VIEWS;LINKS;MODULES" ${ARGN})
    norvane_qt_library(${name} SOURCES ${ARG_SOURCES} LINKS ${ARG_LINKS} Qt6::Quick)
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    string(REPLACE "." "/" folder ${ARG_URI})
    qt_add_qml_module(${name} URI ${ARG_URI} VERSION 1.0 NO_PLUGIN RESOURCE_PREFIX /qt/qml
        OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/qml/${folder} IMPORT_PATH ${CMAKE_BINARY_DIR}/qml DEPENDENCIES ${ARG_MODULES}
        QML_FILES ${ARG_VIEWS})
    # The generated registration includes headers by their bare names.
    foreach(source ${ARG_SOURCES})
        cmake_path(GET source PARENT_PATH folder)
        target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${folder})
    endforeach()
    # Nothing calls the registration: the linker takes it out of the library because it is asked to.
    string(REPLACE "." "_" function qml_register_types_${ARG_URI})
    string(LENGTH ${function} length)
    target_link_options(${name} INTERFACE "LINKER:--undefined=_Z${length}${function}v")
    # What Qt generates of each view is little beside Qt's headers, so it is compiled in one piece; it does not bear our
    # warnings.
    get_target_property(views ${name} SOURCES)
    list(FILTER views INCLUDE REGEX "/qmlcache/.*_qml[.]cpp$")
    set_source_files_properties(${views} PROPERTIES UNITY_GROUP views)
    set(ignored "#pragma GCC diagnostic ignored ")
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP
        UNITY_BUILD_CODE_BEFORE_INCLUDE "${ignored}\"-Wshadow\"\n${ignored}\"-Wconversion\"")
endfunction()

# norvane_test(NAME SOURCES … LINKS … [QT] [TIMEOUT seconds] [DEPENDS targets] [ALONE_WITH resource])
# Every TEST of the sources becomes one test of ctest; no two of one resource run at a time. QT: with an event loop.
function(norvane_test name)
    if(NOT NORVANE_TESTS)
        return()
    endif()
    cmake_parse_arguments(ARG "QT" "TIMEOUT;ALONE_WITH" "SOURCES;LINKS;DEPENDS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    if(ARG_QT)
        target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/qt_test_main.cpp)
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
    endif()
    target_link_libraries(${name} PRIVATE norvane_options ${ARG_LINKS} GTest::gtest_main)
    target_compile_definitions(${name} PRIVATE NORVANE_BIN_DIR="${NORVANE_BIN_DIR}"
        NORVANE_LIBEXEC_DIR="${NORVANE_LIBEXEC_DIR}" NORVANE_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    if(ARG_DEPENDS)
        add_dependencies(${name} ${ARG_DEPENDS})
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 300)
    endif()
    set(properties TIMEOUT ${ARG_TIMEOUT})
    if(ARG_ALONE_WITH)
        list(APPEND properties RESOURCE_LOCK ${ARG_ALONE_WITH})
    endif()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 PROPERTIES ${properties})
endfunction()
