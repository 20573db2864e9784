// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_FIRSTANSWER_P_H
#define VYXCORE_FIRSTANSWER_P_H

// Marks a function that a fresh process runs for its first answers (a MIME
// type, a default application). The compiler places such functions side by
// side, so that the first answer faults in one stretch of the library's
// code instead of a page in every module it passes through: for a program
// that asks once and exits, those faults are most of the cost.
#if defined(__GNUC__)
#define VYX_FIRST_ANSWER __attribute__((hot))
#else
#define VYX_FIRST_ANSWER
#endif

#endif
