# Compiler settings and the shapes that every folder of the project is built in.

function(morvane_compile_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  if(MORVANE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(MORVANE_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  endif()
  if(MORVANE_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  if(MORVANE_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage)
    target_link_options(${target} PRIVATE --coverage)
  endif()
  target_compile_definitions(${target} PRIVATE QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)
endfunction()

# Tests are compiled often and run once: time goes into the compiler, not into its optimiser.
function(morvane_test_options target)
  target_compile_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo,None>:-O0> $<$<CONFIG:RelWithDebInfo,None>:-g1>)
endfunction()

# The headers that most sources begin with, compiled once for the rooms without widgets, once for those with them, and once
# for the tests.
function(morvane_precompiled_headers)
  if(NOT MORVANE_PCH)
    return()
  endif()
  set(plain <algorithm> <chrono> <cstdint> <deque> <filesystem> <functional> <map> <memory> <optional> <stdexcept> <string>
            <string_view> <unordered_map> <unordered_set> <utility> <vector> <QtCore/QtCore>)
  set(core_headers ${plain})
  set(widgets_headers ${plain} <QtGui/QtGui> <QtWidgets/QtWidgets>)
  set(tests_headers ${widgets_headers} <gtest/gtest.h>)
  set(kinds core widgets)
  if(MORVANE_TESTS)
    list(APPEND kinds tests)
  endif()
  foreach(kind ${kinds})
    file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/pch/${kind}.cpp CONTENT "")
    add_library(pch_${kind} OBJECT ${CMAKE_BINARY_DIR}/pch/${kind}.cpp)
    morvane_compile_options(pch_${kind})
    target_link_libraries(pch_${kind} PRIVATE Qt6::Core)
    set_target_properties(pch_${kind} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    target_precompile_headers(pch_${kind} PRIVATE ${${kind}_headers})
  endforeach()
  target_link_libraries(pch_widgets PRIVATE Qt6::Gui Qt6::Widgets)
  if(MORVANE_TESTS)
    morvane_test_options(pch_tests)
    target_link_libraries(pch_tests PRIVATE GTest::gtest Qt6::Gui Qt6::Widgets)
  endif()
endfunction()

function(morvane_reuse_headers target kind)
  if(MORVANE_PCH)
    target_precompile_headers(${target} REUSE_FROM pch_${kind})
  endif()
endfunction()

# morvane_room(<room> <folder> [WIDGETS] [DEPENDS <room>...] [LIBRARIES <target>...]): src/<folder> as the static library
# mv_<room>. The room publishes the headers in src/<folder>/include, included as "<room>/Header.h"; those beside its
# sources are its own. WIDGETS: it may use Qt Widgets, and has a header "ui_X.h" of its own for each form X.ui there.
function(morvane_room room folder)
  cmake_parse_arguments(ARG "WIDGETS" "" "DEPENDS;LIBRARIES" ${ARGN})
  set(root ${PROJECT_SOURCE_DIR}/src/${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${root}/*.cpp ${root}/*.h ${root}/*.qrc ${root}/*.ui ${root}/include/${room}/*.h)
  add_library(mv_${room} STATIC ${sources})
  set_property(GLOBAL APPEND PROPERTY MORVANE_ROOMS ${room})
  morvane_compile_options(mv_${room})
  set_target_properties(mv_${room} PROPERTIES LINKER_LANGUAGE CXX MORVANE_FOLDER ${root})
  target_include_directories(mv_${room} PUBLIC ${root}/include)
  list(TRANSFORM ARG_DEPENDS PREPEND mv_)
  target_link_libraries(mv_${room} PRIVATE ${ARG_DEPENDS} ${ARG_LIBRARIES} Qt6::Core)
  if(ARG_WIDGETS)
    target_link_libraries(mv_${room} PRIVATE Qt6::Gui Qt6::Widgets)
    # A form names the headers of the room's own controls.
    target_include_directories(mv_${room} PRIVATE ${root})
    # Signals are connected by the window's class, never by the names of its functions.
    file(GLOB forms CONFIGURE_DEPENDS ${root}/*.ui)
    set_target_properties(mv_${room} PROPERTIES AUTOUIC ON AUTOUIC_OPTIONS --no-autoconnection)
    # Otherwise a form that changes alone is not taken up.
    set_target_properties(mv_${room} PROPERTIES AUTOGEN_TARGET_DEPENDS "${forms}")
    morvane_reuse_headers(mv_${room} widgets)
  else()
    morvane_reuse_headers(mv_${room} core)
  endif()
endfunction()

# morvane_use_rooms(<target> <room>...|ALL): the program or test may include the public headers of these rooms.
function(morvane_use_rooms target)
  set(rooms ${ARGN})
  if(rooms STREQUAL "ALL")
    get_property(rooms GLOBAL PROPERTY MORVANE_ROOMS)
    list(REVERSE rooms)
  endif()
  list(TRANSFORM rooms PREPEND mv_)
  target_link_libraries(${target} PRIVATE ${rooms} Qt6::Core Qt6::Gui Qt6::Widgets)
endfunction()

# morvane_open_rooms(<target> <room>...): the same, for the tests of these rooms: their own headers, too.
function(morvane_open_rooms target)
  morvane_use_rooms(${target} ${ARGN})
  foreach(room ${ARGN})
    get_target_property(folder mv_${room} MORVANE_FOLDER)
    target_include_directories(${target} PRIVATE ${folder})
  endforeach()
endfunction()

# morvane_test(<folder> ROOMS <room>... [USES <room>...]): tests/<folder> as the test binary test_<folder>, of these rooms,
# with the help of others.
function(morvane_test folder)
  cmake_parse_arguments(ARG "" "" "ROOMS;USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${folder}/*.cpp ${PROJECT_SOURCE_DIR}/tests/${folder}/*.h)
  add_executable(test_${folder} ${sources})
  morvane_compile_options(test_${folder})
  morvane_test_options(test_${folder})
  target_include_directories(test_${folder} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  morvane_open_rooms(test_${folder} ${ARG_ROOMS})
  if(ARG_USES STREQUAL "ALL")
    morvane_use_rooms(test_${folder} ALL)
  else()
    morvane_use_rooms(test_${folder} ${ARG_USES} windows store app desktop transfer database files base)
  endif()
  target_link_libraries(test_${folder} PRIVATE testkit GTest::gtest Qt6::Test)
  morvane_reuse_headers(test_${folder} tests)
  add_test(NAME ${folder} COMMAND test_${folder})
  set_tests_properties(${folder} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT 600)
endfunction()

# morvane_refused(<room> <header>): a test that a source of the room which includes the header does not compile.
function(morvane_refused room header)
  morvane_refused_source("${room}_${header}" ${room} "#include \"${header}\"\n" "${header}: No such file")
endfunction()

# morvane_refused_source(<what> <room> <source> <message>): a test that this source of the room does not compile, with an
# error message that matches.
function(morvane_refused_source what room content message)
  string(MAKE_C_IDENTIFIER "refused_${what}" name)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  file(GENERATE OUTPUT ${source} CONTENT "${content}")
  add_library(${name} OBJECT EXCLUDE_FROM_ALL ${source})
  set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
  target_include_directories(${name} PRIVATE $<TARGET_PROPERTY:mv_${room},INCLUDE_DIRECTORIES>)
  add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} --build ${CMAKE_BINARY_DIR} --target ${name})
  set_tests_properties(${name} PROPERTIES PASS_REGULAR_EXPRESSION "${message}" RUN_SERIAL ON)
endfunction()

# The shipped database, made from the schema, the shipped rows and the user guide (its help topics) by small programs, one
# of which uses the same SQLite.
function(morvane_shipped_database path)
  set(guide ${PROJECT_SOURCE_DIR}/docs/user-guide.md)
  set(help ${CMAKE_BINARY_DIR}/shipped/help.sql)
  add_executable(make_help ${PROJECT_SOURCE_DIR}/cmake/make_help.cpp)
  morvane_compile_options(make_help)
  add_custom_command(OUTPUT ${help} COMMAND make_help ${guide} ${help} DEPENDS make_help ${guide}
                     COMMENT "Making the help topics")
  set(inputs ${PROJECT_SOURCE_DIR}/src/store/schema.sql ${PROJECT_SOURCE_DIR}/src/store/shipped-rows.sql ${help})
  add_executable(make_database ${PROJECT_SOURCE_DIR}/cmake/make_database.cpp)
  morvane_compile_options(make_database)
  target_link_libraries(make_database PRIVATE SQLite::SQLite3)
  set(pristine ${CMAKE_BINARY_DIR}/shipped/morvane2000.mdb)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/shipped)
  add_custom_command(OUTPUT ${pristine} COMMAND make_database ${pristine} ${inputs} DEPENDS make_database ${inputs}
                     COMMENT "Making the shipped database")
  add_custom_target(shipped_database ALL DEPENDS ${pristine})
  # The program folder gets a copy only when it has none: a rebuild never replaces a database that is in use.
  add_custom_command(TARGET shipped_database POST_BUILD
    COMMAND ${CMAKE_COMMAND} -DFROM=${pristine} -DTO=${path} -P ${PROJECT_SOURCE_DIR}/cmake/copy_if_absent.cmake)
  set_property(GLOBAL PROPERTY MORVANE_SHIPPED_DATABASE ${pristine})
endfunction()
