# What vhtool picture prints and draws.
# Variables: RUNNER, TOOL, SOURCE, WORK (a folder of the test's own).
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
include(${CMAKE_CURRENT_LIST_DIR}/expect.cmake)

# expect_sum(NAME SUM PATH): the file's SHA-256.
function(expect_sum name sum path)
  file(SHA256 ${path} found)
  if(NOT found STREQUAL sum)
    message(SEND_ERROR "${name}: ${path} has the sum ${found} instead of ${sum}")
  endif()
endfunction()

set(picture ${TOOL} picture)
set(gif ${SOURCE}/tests/host/pictures/two.gif)
set(wmf ${SOURCE}/tests/host/pictures/half.wmf)
set(png ${SOURCE}/tests/host/pictures/six.png)

# The sums of the frames are those of the pixels that were packed.
expect("a frame" 0 "f3172289f1810077dffbaf1b61708e4a4e83653ea57a13f4755710947bed9b12" ${picture} info ${gif})
foreach(text "\"format\": \"gif\"" "\"result\": 0" "\"width\": 3" "\"height\": 2" "\"colors\": 8" "\"transparent\": 1"
    "\"frames\": 2" "17e88db187afd62c16e5debf3e6527cd006bc012bc90b51a810cd80c2d511f43")
  expect("info: ${text}" 0 "${text}" ${picture} info ${gif} --frame 1)
endforeach()
expect("no transparent color" 0 "\"transparent\": null" ${picture} info ${gif})
expect("one past the end" 1 "\"result\": 18" ${picture} info ${gif} --frame 2)
expect("one past the end, of one" 1 "\"frames\": 1" ${picture} info ${png} --frame 1)
expect("a metafile" 0 "\"width\": 256" ${picture} info ${wmf})
expect("by GDI+" 0 "\"format\": \"png\"" ${picture} info ${png})
file(WRITE ${WORK}/bad.gif "GIF88a")
file(WRITE ${WORK}/bad "no picture")
expect("a bad GIF" 1 "\"result\": 13" ${picture} info ${WORK}/bad.gif)
expect("no picture" 1 "\"format\": \"unknown\"" ${picture} info ${WORK}/bad)
expect("no file" 4 "none.gif" ${picture} info ${WORK}/none.gif)
expect("no command" 2 "draw" ${picture})
expect("no size" 2 "640x480" ${picture} draw ${gif} ${WORK}/o.bmp --size 6x)
expect("no option" 2 "there is no option \"center\"" ${picture} draw ${gif} ${WORK}/o.bmp --options=SCALE,center)
expect("codes" 0 "18 no such frame" ${picture} info --help)
expect("another output" 2 ".bmp or .png" ${picture} draw ${gif} ${WORK}/o.gif)

# The sheets were put together by another program.
foreach(case "UPPER_LEFT:b449a0d882239b9edeaee84f449f778171207ec33027af2f92e8b0a90318fa42" "LOWER_RIGHT,TRANSPARENT:3aa81dae71bfab90adcaf6eae4d7de1ba85937d2383d42c1c931ca5acd0cf10b"
    "HCENTER,VCENTER:89eb3b8b10aa5dc8e566ea05f1d21cfe88456e73b9f3f0984d152d4d27dc9e18")
  string(REPLACE ":" ";" case "${case}")
  list(GET case 0 options)
  list(GET case 1 sum)
  expect("draw" 0 "" ${picture} draw ${gif} ${WORK}/o.bmp --frame 1 --size 6x4 "--options=${options}")
  expect_sum("draw ${options}" ${sum} ${WORK}/o.bmp)
endforeach()
expect("draw, bad" 1 "no picture" ${picture} draw ${WORK}/bad.gif ${WORK}/o.bmp)
expect("draw, no frame" 1 "no frame 2 of 2" ${picture} draw ${gif} ${WORK}/o.bmp --frame 2)
expect_sum("a failure leaves the file before" 89eb3b8b10aa5dc8e566ea05f1d21cfe88456e73b9f3f0984d152d4d27dc9e18 ${WORK}/o.bmp)
expect("draw, no folder" 4 "none" ${picture} draw ${gif} ${WORK}/none/o.bmp)
# What is drawn shows the same when it is read again, whatever reads it.
foreach(out o.png o.bmp)
  expect("draw ${out}" 0 "" ${picture} draw ${png} ${WORK}/${out})
  expect("read ${out}" 0 "3644ccb444861b4827f39e7591611abcb9649fbe6e008da3b6aaf06ec55f1e04" ${picture} info ${WORK}/${out})
endforeach()
file(GLOB left RELATIVE ${WORK} ${WORK}/*)
if(NOT left STREQUAL "bad;bad.gif;o.bmp;o.png")
  message(SEND_ERROR "files are left: ${left}")
endif()
message("${checks} runs checked")
