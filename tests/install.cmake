# The installed tree used from outside: find_package from another project,
# and run.sh starting the installed driver.
add_test(NAME install_and_find_package
         COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/install_check.sh ${CMAKE_BINARY_DIR}
                 ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/data/pentacene_pencen01.cif)
