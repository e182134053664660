// Declaration-only mirror of the parts of <sys/proc_info.h> the bindings use.
#pragma once

#include <stdint.h>
#include <sys/types.h>

#ifndef MAXCOMLEN
#define MAXCOMLEN 16
#endif

#define PROC_UID_ONLY 4

struct proc_bsdinfo {
    uint32_t pbi_flags;
    uint32_t pbi_status;
    uint32_t pbi_xstatus;
    uint32_t pbi_pid;
    uint32_t pbi_ppid;
    uid_t pbi_uid;
    gid_t pbi_gid;
    uid_t pbi_ruid;
    gid_t pbi_rgid;
    uid_t pbi_svuid;
    gid_t pbi_svgid;
    uint32_t rfu_1;
    char pbi_comm[MAXCOMLEN];
    char pbi_name[2 * MAXCOMLEN];
    uint32_t pbi_nfiles;
    uint32_t pbi_pgid;
    uint32_t pbi_pjobc;
    uint32_t e_tdev;
    uint32_t e_tpgid;
    int32_t pbi_nice;
    uint64_t pbi_start_tvsec;
    uint64_t pbi_start_tvusec;
};

static_assert(sizeof(struct proc_bsdinfo) == 136, "proc_bsdinfo is 136 bytes");

#define PROC_PIDTBSDINFO 3
// 4 × MAXPATHLEN, which is 1024 on macOS (Linux's MAXPATHLEN differs, so it is spelled out).
#define PROC_PIDPATHINFO_MAXSIZE (4 * 1024)
