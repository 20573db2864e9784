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
