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
  target_compile_definitions(${target} PRIVATE QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)
endfunction()

# morvane_library(<folder> [DEPENDS <folder>...]): src/<folder> as the static library mv_<folder>.
function(morvane_library folder)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp ${PROJECT_SOURCE_DIR}/src/${folder}/*.h
       ${PROJECT_SOURCE_DIR}/src/${folder}/*.qrc)
  add_library(mv_${folder} STATIC ${sources})
  morvane_compile_options(mv_${folder})
  set_target_properties(mv_${folder} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(mv_${folder} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  foreach(dependency ${ARG_DEPENDS})
    target_link_libraries(mv_${folder} PUBLIC mv_${dependency})
  endforeach()
endfunction()

# morvane_test(<folder>): tests/<folder> as the test binary test_<folder>.
function(morvane_test folder)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${folder}/*.cpp ${PROJECT_SOURCE_DIR}/tests/${folder}/*.h)
  add_executable(test_${folder} ${sources})
  morvane_compile_options(test_${folder})
  target_include_directories(test_${folder} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(test_${folder} PRIVATE test_support GTest::gtest)
  if(TARGET mv_${folder})
    target_link_libraries(test_${folder} PRIVATE mv_${folder})
  endif()
  add_test(NAME ${folder} COMMAND test_${folder})
  set_tests_properties(${folder} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT 600)
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
