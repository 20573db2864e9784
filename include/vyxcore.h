// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_H
#define VYXCORE_H

/// \file
/// The whole public interface of libvyxcore. Link with -lvyxcore.

#include "vyxexport.h"
#include "vyxstrings.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"
#include "vyxcmdline.h"
#include "vyxdesktopentry.h"
#include "vyxmime.h"
#include "vyxicontheme.h"
#include "vyxsoundtheme.h"
#include "vyxdisplay.h"
#include "vyxsession.h"
#include "vyxstartmenu.h"
#include "vyxtrash.h"
#include "vyxsystem.h"

#endif
