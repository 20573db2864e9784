# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# Writes the key-symbol to Unicode table of KeySym2Ucs from the comments of
# X11's keysymdef.h, so that the table follows the installed header instead
# of being typed by hand. Run as
#   cmake -DKEYSYMDEF=/usr/include/X11/keysymdef.h -DOUTPUT=keysymtable.inc -P KeysymTable.cmake
#
# A line names its character as "/* U+0104 NAME */", or as "/*(U+2500 NAME)*/"
# where the match is only approximate; both are taken. Where several names
# share a keysym the first line wins, as the header asks. Keysyms that
# KeySym2Ucs maps by rule (Latin-1 and 0x01000000 + code point) are left out.

if(NOT KEYSYMDEF OR NOT OUTPUT)
  message(FATAL_ERROR "KeysymTable.cmake needs -DKEYSYMDEF=... and -DOUTPUT=...")
endif()

set(pattern "^#define XK_[A-Za-z0-9_]+[ \t]+0x([0-9A-Fa-f]+)[ \t]*/\\*\\(? ?U\\+([0-9A-Fa-f]+)[ )]")
file(STRINGS "${KEYSYMDEF}" lines REGEX "${pattern}")

set(entries "")
foreach(line IN LISTS lines)
  if(NOT line MATCHES "${pattern}")
    continue()
  endif()
  string(TOLOWER "${CMAKE_MATCH_1}" keysym)
  string(TOLOWER "${CMAKE_MATCH_2}" ucs)
  math(EXPR value "0x${keysym}")
  # 0x20-0x7e, 0xa0-0xff, 0x01000000-0x0110ffff
  if((value GREATER_EQUAL 32 AND value LESS_EQUAL 126) OR (value GREATER_EQUAL 160 AND value LESS_EQUAL 255)
     OR (value GREATER_EQUAL 16777216 AND value LESS_EQUAL 17891327))
    continue()
  endif()
  # Zero-padded, so that sorting the texts sorts the numbers.
  string(LENGTH "${keysym}" length)
  math(EXPR pad "8 - ${length}")
  if(pad LESS 0)
    message(FATAL_ERROR "${KEYSYMDEF}: keysym 0x${keysym} is wider than 32 bits")
  endif()
  string(REPEAT "0" ${pad} zeros)
  set(keysym "${zeros}${keysym}")
  if(DEFINED seen_${keysym})
    continue()
  endif()
  set(seen_${keysym} 1)
  list(APPEND entries "${keysym}:${ucs}")
endforeach()

list(LENGTH entries count)
if(count LESS 100)
  message(FATAL_ERROR "${KEYSYMDEF}: only ${count} keysyms with a Unicode character; not the header expected")
endif()
list(SORT entries)

set(text "// Generated from ${KEYSYMDEF} by KeysymTable.cmake; do not edit.\n")
foreach(entry IN LISTS entries)
  string(REPLACE ":" ", 0x" pair "${entry}")
  string(APPEND text "{0x${pair}},\n")
endforeach()

# Rewritten only when it changes, so that a re-run rebuilds nothing.
set(old "")
if(EXISTS "${OUTPUT}")
  file(READ "${OUTPUT}" old)
endif()
if(NOT old STREQUAL text)
  file(WRITE "${OUTPUT}" "${text}")
endif()
