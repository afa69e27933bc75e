# Transfer-integral and reorganisation-energy inputs of a real crystal read
# back by ASE and pymatgen (needs VESKA_SYSTEM_PYTHON3 from readback.cmake).
add_executable(veska_qc_jobs_generate ${CMAKE_CURRENT_SOURCE_DIR}/readback/generate_qc_jobs.cpp)
target_link_libraries(veska_qc_jobs_generate PRIVATE veska_transport)
if(VESKA_SYSTEM_PYTHON3)
  add_test(NAME qc_jobs_readback COMMAND ${VESKA_SYSTEM_PYTHON3}
           ${CMAKE_CURRENT_SOURCE_DIR}/readback/check_qc_jobs.py $<TARGET_FILE:veska_qc_jobs_generate>
           ${CMAKE_CURRENT_SOURCE_DIR}/data/anthracene_antcen24.cif)
else()
  add_test(NAME qc_jobs_readback COMMAND sh -c "echo 'SKIP: no python3 for the read-back'; exit 77")
endif()
set_tests_properties(qc_jobs_readback PROPERTIES SKIP_RETURN_CODE 77)
