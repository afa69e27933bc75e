# Every shared crystal (and one MOL input) from veska.inp to a run
# directory, checked by independent tools; see e2e/check_run_dirs.py.
if(VESKA_SYSTEM_PYTHON3)
  add_test(NAME run_directories_end_to_end
           COMMAND ${VESKA_SYSTEM_PYTHON3} ${CMAKE_CURRENT_SOURCE_DIR}/e2e/check_run_dirs.py
                   $<TARGET_FILE:veska_transport_inp> $<TARGET_FILE:veska_transport_prepare>
                   ${CMAKE_CURRENT_SOURCE_DIR}/data ${CMAKE_CURRENT_SOURCE_DIR}/data/run_listings)
else()
  add_test(NAME run_directories_end_to_end COMMAND sh -c "echo 'SKIP: no python3'; exit 77")
  set_tests_properties(run_directories_end_to_end PROPERTIES SKIP_RETURN_CODE 77)
endif()
