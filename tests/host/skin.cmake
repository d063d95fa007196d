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
expect("into its own folder" 4 "lies in the folder" ${skin} pack ${WORK}/back ${WORK}/back/skin.ini)
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
skin.ini:7: [ALL] RECT3: is not among the 2 that RECTS counts
skin.ini:9: [ALL] IMAGE1: there is no picture \"Button-Up.gif\"; is \"button-up.gif\" meant?
skin.ini:10: [ALL] IMAGE1OPT: \"HCENTRE\" is no option; is \"HCENTER\" meant?
skin.ini:10: [ALL] IMAGE1OPT: \" SCALE\" is no option; is \"SCALE\" meant?
skin.ini:11: [ALL] IMAGE2: \"bad.gif\" can't be read as a picture
skin.ini:12: [ALL] IMAGE2POS: must be two numbers like \"10,20\"
skin.ini:14: [ALL] BUTTONSDOWN: \"note.txt\" is neither .gif nor .bmp
skin.ini:15: [ALL] BUTTONS: must be a number from 0 to 1000
skin.ini:19: [Page] RECT1AREA: the corners are swapped: POS is the top left, AREA the bottom right one
skin.ini:20: [Page] RECT2AREA: lies outside 0,0 to 460,305
skin.ini:21: [Page] RECT3AREA: the rectangle is empty
skin.ini:22: [Page] TEXTCOLOR: must be a color like \"240,240,255\"
skin.ini:23: [Page] TEXTCOLOR: line 22 has the key already
skin.ini:24: [Page] IMAGE1POS: there is no IMAGES
skin.ini:26: [Page] BUTTON1: must be a number from 1 to 65535
skin.ini:27: [Page] BUTTON1POS: lies outside 0,0 to 460,305
skin.ini:28: [Page] BUTTON1UP: is cut to 259 characters
skin.ini:29: [Page] BUTTONSTXTCLR: nobody reads this key
skin.ini:30: [Page] textcolour: nobody reads this key; is \"TEXTCOLOR\" meant?
skin.ini:31: [Page] WIDTH: nobody reads this key
skin.ini:32: [Page-407] a language is four lower-case hexadecimal digits, like \"-0407\"
skin.ini:33: [Page-407] TEXTCOLOR: has no value
skin.ini:34: [ALLES] names that begin with \"ALL\" are no dialogs'; is \"ALL\" meant?
skin.ini:35: [page] line 16 begins the section already
skin.ini:36: [All-0007] names count case; is \"ALL\" meant?
skin.ini:37: [ALL-de] a language is four lower-case hexadecimal digits, like \"-0407\"
skin.ini:40: [Wait-Face] rect1: must be a color like \"240,240,255\"
skin.ini:40: [Wait-Face] RECT1AREA: the rectangle is empty
skin.ini:41: [${long}] no dialog's name is longer than 99 characters
skin.ini:43: [SKINS] VERSIO: nobody reads this key; is \"VERSION\" meant?
\"head.bmp\": nobody uses this picture
" ${skin} check ${WORK}/bad)
# All names that the system tells in one answer, and one letter more.
string(REPEAT "x" 92 fill)
foreach(i RANGE 10 40)
  string(APPEND names "[${i}${fill}x]\n")
endforeach()
file(WRITE ${WORK}/empty/skin.ini "${names}[41${fill}]\n")
expect_lines("names that fit" 0 "" ${skin} check ${WORK}/empty)
file(WRITE ${WORK}/empty/skin.ini "${names}[41${fill}x]\n")
expect_lines("names that don't" 1
  "skin.ini:32: [41${fill}x] all names together are too long; this section is lost\n" ${skin} check ${WORK}/empty)
string(ASCII 239 187 191 mark)
file(WRITE ${WORK}/empty/skin.ini "${mark}[ALL]\n")
expect("a mark" 1 "skin.ini:1: the text must be plain" ${skin} check ${WORK}/empty)

# A picture for each section, and for dialogs of a language or of a name.
file(STRINGS ${sample}/skin.ini sections REGEX "^\\[")
string(REGEX REPLACE "[][]" "" sections "${sections}")
list(REMOVE_ITEM sections SKINS)
expect("preview" 0 "Welcome-0007.png" ${skin} preview ${WORK}/a.skin ${WORK}/pictures)
skins(pictures ${WORK}/pictures ${sections})
expect("of a language" 0 "Welcome.png" ${skin} preview ${sample} ${WORK}/german --language 1031)
skins(same ${WORK}/pictures/Welcome-0007.png ${WORK}/german/Welcome.png)
expect("of a name" 0 "Nobody.png" ${skin} preview ${sample} ${WORK}/named --section Nobody)
skins(same ${WORK}/pictures/ALL.png ${WORK}/named/Nobody.png)
expect("of a cut one" 1 "ends inside an entry" ${skin} preview ${WORK}/cut.skin ${WORK}/none)
expect("no number" 2 "--language" ${skin} preview ${sample} ${WORK}/none --language de)
expect_file("no pictures of those" FALSE ${WORK}/none)
message("${checks} runs checked")
