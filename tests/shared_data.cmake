# The bundled real data are byte-for-byte what reference.json's sha256 says
# (a changed line end fails), and so is shared/data beside the checkout when
# it is there. Crystals without an entry are pinned here. Included by
# tests/CMakeLists.txt, the file adds the test; run with -P, it checks.
if(NOT CMAKE_SCRIPT_MODE_FILE)
  add_test(NAME shared_data_sha256 COMMAND ${CMAKE_COMMAND} -DDATA=${CMAKE_CURRENT_SOURCE_DIR}/data
           -DSHARED=${PROJECT_SOURCE_DIR}/../shared/data -P ${CMAKE_CURRENT_LIST_FILE})
  return()
endif()
cmake_minimum_required(VERSION 3.19)  # string(JSON)
set(pinned
  c16h14s4_merqim.cif=f857d569830e6537829893ccc1576cb41fb3b81cad6c595ccb793acdfd680a8f
  c20h14s2_lufhaw.cif=e8a302dec3eef0812526f365e1fc430f1caec871def4079f8b1adc73045eed7b
  naphthodithiophene_hahcoi.cif=54c05a2ce242635b38d7302e40c351232132e095e05a089fd8bff87196d2a6bb
  quinacridone_beta.cif=7cdcb09b02b00dd0997bef9bf99dedea768a3a5d578aa81486823e7584e658c1
  tbbt_japwih.cif=b30d5485c0575874ce9b301424ec86885a849a7a543f5d1960add1653fe04263
  tipge_pentacene_x17059_disordered.cif=7fcee2110348d5a4b1358c19d0ab1b128dde80280c876a5ae4d26950a6863938)
file(READ ${DATA}/reference.json json)
string(JSON count LENGTH "${json}" entries)
math(EXPR last "${count} - 1")
foreach(i RANGE ${last})
  string(JSON name GET "${json}" entries ${i} file)
  string(JSON sum GET "${json}" entries ${i} sha256)
  list(APPEND pinned ${name}=${sum})
endforeach()
set(dirs ${DATA})
if(IS_DIRECTORY ${SHARED})
  list(APPEND dirs ${SHARED})
  foreach(name reference.json MANIFEST.md)  # no recorded sum: the copies must agree
    file(SHA256 ${DATA}/${name} sum)
    list(APPEND pinned ${name}=${sum})
  endforeach()
else()
  message("shared/data is not beside the checkout: only the copies in tests/data are checked")
endif()
set(failed 0)
set(checked 0)
foreach(entry ${pinned})
  string(REPLACE "=" ";" pair ${entry})
  list(GET pair 0 name)
  list(GET pair 1 want)
  foreach(dir ${dirs})
    set(got missing)
    if(EXISTS ${dir}/${name})
      file(SHA256 ${dir}/${name} got)
    endif()
    math(EXPR checked "${checked} + 1")
    if(NOT got STREQUAL want)
      message("FAIL: ${dir}/${name}: sha256 ${got}, expected ${want}")
      math(EXPR failed "${failed} + 1")
    endif()
  endforeach()
endforeach()
if(failed)
  message(FATAL_ERROR "${failed} of ${checked} data files differ from their recorded SHA-256")
endif()
message("${checked} data files match their recorded SHA-256")
