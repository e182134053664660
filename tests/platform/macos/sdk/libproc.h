// Declaration-only mirror of the parts of <libproc.h> the bindings use.
#pragma once

#include <os/availability.h>
#include <stdint.h>
#include <sys/proc_info.h>
#include <sys/resource.h>
#include <sys/types.h>

extern "C" {

int proc_listpids(uint32_t type, uint32_t typeinfo, void* buffer, int buffersize)
    API_AVAILABLE(macos(10.5));
int proc_pidinfo(int pid, int flavor, uint64_t arg, void* buffer, int buffersize)
    API_AVAILABLE(macos(10.5));
int proc_name(int pid, void* buffer, uint32_t buffersize) API_AVAILABLE(macos(10.5));
int proc_pidpath(int pid, void* buffer, uint32_t buffersize) API_AVAILABLE(macos(10.5));
int proc_pid_rusage(int pid, int flavor, rusage_info_t* buffer) API_AVAILABLE(macos(10.9));

}  // extern "C"
