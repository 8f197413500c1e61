# orvane_floor(<name> [USES floor...] [LIBRARIES target...] [OWN_PRECOMPILED])
#
# One static library per folder of src/, linked only to the floors below it. A folder that has no .cpp yet is a header
# library; it turns into a static one by itself when the first .cpp appears.
function(orvane_floor name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "OWN_PRECOMPILED" "" "USES;LIBRARIES")
  set(folder "${PROJECT_SOURCE_DIR}/src/${name}")
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${folder}/*.cpp")
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS "${folder}/*.h")
  set(fuzzers ${sources})
  list(FILTER fuzzers INCLUDE REGEX "/fuzz/")
  list(FILTER sources EXCLUDE REGEX "/fuzz/")
  list(FILTER headers EXCLUDE REGEX "/fuzz/")
  list(TRANSFORM arg_USES PREPEND "orvane_" OUTPUT_VARIABLE floors)

  set(target "orvane_${name}")
  if(sources OR name STREQUAL "server") # the server always has its embedded migrations
    add_library(${target} STATIC ${sources} ${headers})
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${target} PRIVATE orvane_warnings PUBLIC ${floors} ${arg_LIBRARIES})
    if(NOT arg_OWN_PRECOMPILED)
      orvane_precompile(${target} ${ORVANE_STANDARD_HEADERS})
    endif()
  else()
    add_library(${target} INTERFACE ${headers})
    target_include_directories(${target} INTERFACE "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${target} INTERFACE ${floors} ${arg_LIBRARIES})
  endif()

  if(ORVANE_VERIFY_HEADERS AND headers)
    target_sources(${target} INTERFACE FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}/src" FILES ${headers})
    set_target_properties(${target} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
  endif()

  if(ORVANE_FUZZ)
    foreach(fuzzer IN LISTS fuzzers)
      cmake_path(GET fuzzer STEM stem)
      add_executable(fuzz_${name}_${stem} "${fuzzer}")
      target_link_libraries(fuzz_${name}_${stem} PRIVATE ${target})
      target_link_options(fuzz_${name}_${stem} PRIVATE -fsanitize=fuzzer)
      list(APPEND all_fuzzers fuzz_${name}_${stem})
    endforeach()
    if(NOT TARGET fuzzers)
      add_custom_target(fuzzers)
    endif()
    if(all_fuzzers)
      add_dependencies(fuzzers ${all_fuzzers})
    endif()
  endif()
endfunction()

# Qt's meta-object compiler and resources for one floor, and the headers most of its units read, precompiled.
function(orvane_qt_floor name)
  get_target_property(kind orvane_${name} TYPE)
  if(kind STREQUAL "INTERFACE_LIBRARY")
    return()
  endif()
  file(GLOB_RECURSE resources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/${name}/*.qrc")
  target_sources(orvane_${name} PRIVATE ${resources})
  set_target_properties(orvane_${name} PROPERTIES AUTOMOC ON AUTORCC ON)
  orvane_precompile(orvane_${name}
    <map> <memory> <string> <vector>
    <QtCore/QEvent> <QtCore/QObject> <QtCore/QPointer> <QtCore/QString> <QtCore/QTimer>
    <QtGui/QAction> <QtGui/QKeyEvent> <QtGui/QMouseEvent> <QtGui/QPainter>
    <QtWidgets/QApplication> <QtWidgets/QBoxLayout> <QtWidgets/QDialog> <QtWidgets/QFrame> <QtWidgets/QHeaderView>
    <QtWidgets/QLabel> <QtWidgets/QLineEdit> <QtWidgets/QMainWindow> <QtWidgets/QPushButton>
    <QtWidgets/QStyledItemDelegate> <QtWidgets/QTableView> <QtWidgets/QTabWidget> <QtWidgets/QToolButton>)
endfunction()

# orvane_program(<executable> FOLDER <folder of src/apps> USES floor...)
# Nothing is made until the folder has a main.cpp.
function(orvane_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "FOLDER" "USES")
  set(folder "${PROJECT_SOURCE_DIR}/src/apps/${arg_FOLDER}")
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${folder}/*.cpp" "${folder}/*.h")
  if(NOT "${folder}/main.cpp" IN_LIST sources OR ORVANE_FUZZ)
    return()
  endif()
  list(TRANSFORM arg_USES PREPEND "orvane_" OUTPUT_VARIABLE floors)
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${name} PRIVATE orvane_warnings ${floors} CLI11::CLI11 PkgConfig::tomlplusplus spdlog::spdlog
                                        Threads::Threads)
  if("desktop" IN_LIST arg_USES)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
endfunction()
