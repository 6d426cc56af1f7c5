# CPack's part: it has put what the packages carry into a folder, and takes the finished packages.
set(output ${CPACK_TOPLEVEL_DIRECTORY}/${CPACK_PACKAGE_FILE_NAME})
execute_process(
  COMMAND ${CPACK_QUILLET_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/make_packages.py
    ${CPACK_TEMPORARY_DIRECTORY} ${CPACK_PACKAGE_VERSION} ${CPACK_QUILLET_RELEASE_DATE} ${output}
  COMMAND_ERROR_IS_FATAL ANY)
set(CPACK_EXTERNAL_BUILT_PACKAGES ${output}.zip ${output}.msi)
