# libtql_wnd.so out of all folders, with its headers, CMake package and pkg-config file.

include(CMakePackageConfigHelpers)

get_property(tql_folders GLOBAL PROPERTY TQL_FOLDERS)
file(GLOB wnd_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/wnd/*.cpp)
if(NOT wnd_sources)  # a library needs a source of its own, even when the folders hold all
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/Empty.cpp CONTENT "")
    set(wnd_sources ${PROJECT_BINARY_DIR}/Empty.cpp)
endif()

add_library(tql_wnd SHARED ${wnd_sources})
add_library(tql::wnd ALIAS tql_wnd)
# Whole archives: a host may use any class, also one that no other class names.
list(JOIN tql_folders "," whole)
set_target_properties(tql_wnd PROPERTIES LINK_LIBRARY_OVERRIDE "WHOLE_ARCHIVE,${whole}")
target_link_libraries(tql_wnd PRIVATE ${tql_folders})
# Qt's headers stand in ours; GDAL, PROJ, GeographicLib and Eigen never do.
target_link_libraries(tql_wnd PUBLIC Qt6::Widgets)
target_link_libraries(tql_wnd PRIVATE tql_options)
target_include_directories(tql_wnd PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/tql_wnd>)
target_compile_features(tql_wnd PUBLIC cxx_std_20)
set_target_properties(tql_wnd PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME wnd LINKER_LANGUAGE CXX)

install(TARGETS tql_wnd EXPORT tql_wndTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
foreach(dir foundation edit project view dialogs coord sensor vecprop plot enhance output speclib
        classify wnd)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${dir}
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tql_wnd COMPONENT development
        FILES_MATCHING PATTERN "*.h")
endforeach()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tql_wnd)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/tql_wndConfig.cmake.in
    ${PROJECT_BINARY_DIR}/tql_wndConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tql_wndConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tql_wndConfig.cmake
    ${PROJECT_BINARY_DIR}/tql_wndConfigVersion.cmake
    DESTINATION ${package_dir} COMPONENT development)
install(EXPORT tql_wndTargets NAMESPACE tql:: DESTINATION ${package_dir} COMPONENT development)

# from the folder of the .pc file back to the prefix, however deep the library folder is
file(RELATIVE_PATH tql_pc_to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file(${PROJECT_SOURCE_DIR}/cmake/tql_wnd.pc.in ${PROJECT_BINARY_DIR}/tql_wnd.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tql_wnd.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
