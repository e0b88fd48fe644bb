# tqlview, the host that ships with the library, and the program that pictures its windows.

file(GLOB host_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/host/*.cpp)
list(REMOVE_ITEM host_sources ${PROJECT_SOURCE_DIR}/host/Main.cpp)
file(GLOB gallery_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/host/gallery/*.cpp)
file(GLOB resources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/host/*.qrc)
if(NOT host_sources OR NOT TARGET tql_wnd)
    return()
endif()

add_library(tql_host STATIC ${host_sources})
target_link_libraries(tql_host PUBLIC tql_options tql_wnd)
tql_precompile(tql_host widgets)

if(EXISTS ${PROJECT_SOURCE_DIR}/host/Main.cpp)
    add_executable(tqlview host/Main.cpp)
    target_link_libraries(tqlview PRIVATE tql_host)
    target_compile_definitions(tqlview PRIVATE TQL_VERSION="${PROJECT_VERSION}")
    set_target_properties(tqlview PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
    install(TARGETS tqlview RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT application)
    if(EXISTS ${PROJECT_SOURCE_DIR}/host/share)
        install(DIRECTORY ${PROJECT_SOURCE_DIR}/host/share/ DESTINATION ${CMAKE_INSTALL_DATADIR}
            COMPONENT application)
    endif()
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/sample
        DESTINATION ${CMAKE_INSTALL_DATADIR}/tqlview COMPONENT application)
endif()
if(gallery_sources)
    add_executable(tql_gallery ${gallery_sources})
    target_link_libraries(tql_gallery PRIVATE tql_host)
endif()
