# Job scripts checked by shell tools nobody here wrote: bash -n and
# shellcheck -S error over every kind in every dialect (skips without shellcheck).
add_test(NAME job_scripts_shellcheck
         COMMAND sh ${CMAKE_CURRENT_SOURCE_DIR}/shellcheck_job_scripts.sh $<TARGET_FILE:veska_tests>)
set_tests_properties(job_scripts_shellcheck PROPERTIES SKIP_RETURN_CODE 77)
