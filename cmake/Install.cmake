# What is installed, in three components: library (with the model, which every agent reads), dev and tools.
set(model_directory ${CMAKE_INSTALL_DATADIR}/cwmp-datamodel/model)
install(TARGETS cwmp-datamodel LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/model/ DESTINATION ${model_directory} COMPONENT library
    FILES_MATCHING PATTERN "*.txt")

# The file finds the rest from where it lies, so that a staging directory needs no editing.
file(RELATIVE_PATH to_includes /${CMAKE_INSTALL_LIBDIR}/pkgconfig /${CMAKE_INSTALL_INCLUDEDIR})
file(RELATIVE_PATH to_model /${CMAKE_INSTALL_LIBDIR}/pkgconfig /${model_directory})
configure_file(${CMAKE_CURRENT_LIST_DIR}/cwmp-datamodel.pc.in cwmp-datamodel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/cwmp-datamodel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/cwmp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)
