#pragma once

// libntfs-3g for C++. Its headers look at what its own build found out about the system.

#define HAVE_CLOCK_GETTIME 1
#define HAVE_STDINT_H 1
#define HAVE_STDIO_H 1
#define HAVE_SYS_PARAM_H 1
#define HAVE_SYS_STAT_H 1
#define HAVE_SYS_TYPES_H 1
#define HAVE_TIME_H 1

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdarg>
#include <cstdio>
#include <ctime>

// clang-format off
extern "C" {
#include <ntfs-3g/types.h>
#include <ntfs-3g/volume.h>
#include <ntfs-3g/inode.h>
#include <ntfs-3g/attrib.h>
#include <ntfs-3g/attrlist.h>
#include <ntfs-3g/logging.h>
#include <ntfs-3g/dir.h>
#include <ntfs-3g/mft.h>
#include <ntfs-3g/reparse.h>
#include <ntfs-3g/runlist.h>
#include <ntfs-3g/security.h>
}
// clang-format on
