// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_EXPORT_H
#define VYXCORE_EXPORT_H

/// \file
/// The one export macro. The library is built with hidden visibility; only
/// names marked VYX_EXPORT form its binary interface.
///
/// Threads: a macro only; nothing here runs.
#if defined(__GNUC__) || defined(__clang__)
#define VYX_EXPORT __attribute__((visibility("default")))
#else
#define VYX_EXPORT
#endif

#endif
