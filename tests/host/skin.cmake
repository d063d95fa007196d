# What vhtool skin packs, unpacks, lists, finds and draws.
# Variables: RUNNER, TOOL, SOURCE, WORK (a folder of the test's own).
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
include(${CMAKE_CURRENT_LIST_DIR}/expect.cmake)

set(skin ${TOOL} skin)
set(sample ${SOURCE}/samples/skin/quiet)
function(skins)
  execute_process(COMMAND python3 -B ${SOURCE}/tests/host/skins.py ${ARGN} RESULT_VARIABLE code OUTPUT_VARIABLE out
    ERROR_VARIABLE out)
  if(code)
    message(SEND_ERROR "skins.py ${ARGN}: ${out}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()
# expect_lines(NAME CODE LINES COMMAND...): these lines and no others.
function(expect_lines name code lines)
  execute_process(COMMAND ${RUNNER} ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_QUIET TIMEOUT 60)
  string(REPLACE "\r" "" out "${out}")
  if(NOT result STREQUAL code OR NOT out STREQUAL lines)
    message(SEND_ERROR "${name}: exit code ${result}\n${out}instead of ${code}\n${lines}")
  endif()
  math(EXPR checks "${checks} + 1")
  set(checks ${checks} PARENT_SCOPE)
endfunction()

# The sample, there and back.
expect("pack" 0 "" ${skin} pack ${sample} ${WORK}/a.skin)
skins(compare ${WORK}/a.skin ${sample})
expect("unpack" 0 "" ${skin} unpack ${WORK}/a.skin ${WORK}/back)
expect("pack again" 0 "" ${skin} pack ${WORK}/back ${WORK}/b.skin)
file(SHA256 ${WORK}/a.skin first)
file(SHA256 ${WORK}/b.skin second)
if(NOT first STREQUAL second)
  message(SEND_ERROR "the same files make two containers")
endif()
expect("list" 0 "84x23	\"button-up.gif\"" ${skin} list ${WORK}/a.skin)
expect_lines("the sample is clean" 0 "" ${skin} check ${sample})
expect_lines("packed too" 0 "" ${skin} check ${WORK}/a.skin)

# What is there stays, and nothing comes beside it.
file(WRITE ${WORK}/back/skin.ini "mine")
file(REMOVE ${WORK}/back/head.bmp)
expect("there already" 4 "--overwrite" ${skin} unpack ${WORK}/a.skin ${WORK}/back)
file(READ ${WORK}/back/skin.ini kept)
if(NOT kept STREQUAL "mine" OR EXISTS ${WORK}/back/head.bmp)
  message(SEND_ERROR "an unpacking that is refused has written")
endif()
expect("overwrite" 0 "" ${skin} unpack ${WORK}/a.skin ${WORK}/back --overwrite)
skins(compare ${WORK}/a.skin ${WORK}/back)

# Containers that lie: nothing of them is written.
skins(make ${WORK})
math(EXPR last "${out} - 1")
foreach(i RANGE ${last})
  expect("name ${i}" 1 "name" ${skin} unpack ${WORK}/name${i}.skin ${WORK}/none)
endforeach()
expect("cut" 1 "ends inside an entry" ${skin} unpack ${WORK}/cut.skin ${WORK}/none)
expect("no text" 1 "there is no \"skin.ini\"" ${skin} unpack ${WORK}/bare.skin ${WORK}/none)
expect("not scrambled" 1 "is no skin" ${skin} list ${WORK}/plain.skin)
expect("check of a cut one" 1 "ends inside an entry" ${skin} check ${WORK}/cut.skin)
expect_file("nothing is written" FALSE ${WORK}/none)
expect_file("nor beside" FALSE ${WORK}/x.gif)

# Folders that can't be packed leave the container as it was.
file(MAKE_DIRECTORY ${WORK}/deep/folder ${WORK}/empty)
file(WRITE ${WORK}/deep/skin.ini "[ALL]")
expect("a folder below" 1 "folder: a skin has no folders" ${skin} pack ${WORK}/deep ${WORK}/a.skin)
expect("no skin.ini" 1 "there is no \"skin.ini\"" ${skin} pack ${WORK}/empty ${WORK}/a.skin)
expect("no folder" 4 "nowhere" ${skin} pack ${WORK}/nowhere ${WORK}/a.skin)
expect("no place" 4 "nowhere" ${skin} pack ${sample} ${WORK}/nowhere/a.skin)
file(SHA256 ${WORK}/a.skin second)
if(NOT first STREQUAL second)
  message(SEND_ERROR "a pack that fails has changed the file")
endif()
expect("no command" 2 "preview" ${skin})
expect("no such file" 4 "none.skin" ${skin} list ${WORK}/none.skin)

# Each finding, at its line.
file(MAKE_DIRECTORY ${WORK}/bad)
file(COPY ${sample}/button-up.gif ${sample}/head.bmp DESTINATION ${WORK}/bad)
file(WRITE ${WORK}/bad/bad.gif "GIF89a")
file(WRITE ${WORK}/bad/note.txt "no picture")
string(REPEAT "x" 100 long)
string(REPEAT "x" 260 cut)
file(WRITE ${WORK}/bad/skin.ini "VERSION=1
[ALL]
TEXTCOLOR=1,2
TEXTCLR=1,2,3
RECTS=2
RECT1AREA=10,10
RECT3=1,2,3
IMAGES=2
IMAGE1=Button-Up.gif
IMAGE1OPT=HCENTRE,TRANSPARENT, SCALE
IMAGE2=bad.gif
IMAGE2POS=12
BUTTONSUP=button-up.gif
BUTTONSDOWN=note.txt
BUTTONS=x
[Page]
RECTS=3
RECT1POS=20,20
RECT1AREA=10,30
RECT2AREA=461,10
RECT3=1,2,3
TEXTCOLOR=256,0,0
TEXTCOLOR=1,2,3
IMAGE1POS=1,1
BUTTONS=1
BUTTON1=0
BUTTON1POS=1,-1
BUTTON1UP=${cut}
BUTTONSTXTCLR=1,2,3
textcolour=1,2,3
WIDTH
[Page-407]
TEXTCOLOR=
[ALLES]
[page]
[All-0007]
[ALL-de]
[Wait-Face]
rects=1
rect1=9
[${long}]
[SKINS]
VERSIO=1
")
expect_lines("findings" 1 "skin.ini:1: stands before the first section, and nobody reads it
skin.ini:3: [ALL] TEXTCOLOR: must be a color like \"240,240,255\"
skin.ini:4: [ALL] TEXTCLR: nobody reads this key; is \"TEXTCOLOR\" meant?
skin.ini:5: [ALL] RECTS: counts 2, but there is no RECT2
skin.ini:5: [ALL] RECT2AREA: the rectangle is empty
skin.ini:7: [ALL] RECT3: is not among the 2 that RECTS counts
" ${skin} check ${WORK}/bad)

# A picture for each section, and for a dialog of a language.
expect("preview" 0 "Welcome-0007.png" ${skin} preview ${WORK}/a.skin ${WORK}/pictures)
