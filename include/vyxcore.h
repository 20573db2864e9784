// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_H
#define VYXCORE_H

/// \file
/// The whole public interface of libvyxcore. Link with -lvyxcore.
///
/// Threads: the library starts no threads; callers use it from their own.
/// Each header says, per class or function family, what may run at once and
/// what the caller must hold. Two rules hold throughout: many functions read
/// environment variables, so no thread may change the environment (setenv,
/// putenv, unsetenv) while another uses the library; and ResetVyxDirs() must
/// not run while another thread uses the library (see vyxdirs.h).

#include "vyxcmdline.h"
#include "vyxdesktopentry.h"
#include "vyxdirs.h"
#include "vyxdisplay.h"
#include "vyxexport.h"
#include "vyxfileutils.h"
#include "vyxicontheme.h"
#include "vyxmime.h"
#include "vyxsession.h"
#include "vyxsoundtheme.h"
#include "vyxstartmenu.h"
#include "vyxstrings.h"
#include "vyxsystem.h"
#include "vyxtrash.h"

#endif
