// Declaration-only mirror of Apple's additions to <sys/resource.h>: the process-usage records that
// proc_pid_rusage fills. The host's own <sys/resource.h> comes first and stays whole, because the
// C and C++ libraries include it too.
#pragma once

#include_next <sys/resource.h>

#include <stdint.h>

#define RUSAGE_INFO_V6 6

typedef void* rusage_info_t;

struct rusage_info_v6 {
    uint8_t ri_uuid[16];
    uint64_t ri_user_time;
    uint64_t ri_system_time;
    uint64_t ri_pkg_idle_wkups;
    uint64_t ri_interrupt_wkups;
    uint64_t ri_pageins;
    uint64_t ri_wired_size;
    uint64_t ri_resident_size;
    uint64_t ri_phys_footprint;
    uint64_t ri_proc_start_abstime;
    uint64_t ri_proc_exit_abstime;
    uint64_t ri_child_user_time;
    uint64_t ri_child_system_time;
    uint64_t ri_child_pkg_idle_wkups;
    uint64_t ri_child_interrupt_wkups;
    uint64_t ri_child_pageins;
    uint64_t ri_child_elapsed_abstime;
    uint64_t ri_diskio_bytesread;
    uint64_t ri_diskio_byteswritten;
    uint64_t ri_cpu_time_qos_default;
    uint64_t ri_cpu_time_qos_maintenance;
    uint64_t ri_cpu_time_qos_background;
    uint64_t ri_cpu_time_qos_utility;
    uint64_t ri_cpu_time_qos_legacy;
    uint64_t ri_cpu_time_qos_user_initiated;
    uint64_t ri_cpu_time_qos_user_interactive;
    uint64_t ri_billed_system_time;
    uint64_t ri_serviced_system_time;
    uint64_t ri_logical_writes;
    uint64_t ri_lifetime_max_phys_footprint;
    uint64_t ri_instructions;
    uint64_t ri_cycles;
    uint64_t ri_billed_energy;
    uint64_t ri_serviced_energy;
    uint64_t ri_interval_max_phys_footprint;
    uint64_t ri_runnable_time;
    uint64_t ri_flags;
    uint64_t ri_user_ptime;
    uint64_t ri_system_ptime;
    uint64_t ri_pinstructions;
    uint64_t ri_pcycles;
    uint64_t ri_energy_nj;
    uint64_t ri_penergy_nj;
    uint64_t ri_secure_time_in_system;
    uint64_t ri_secure_ptime_in_system;
    uint64_t ri_neural_footprint;
    uint64_t ri_lifetime_max_neural_footprint;
    uint64_t ri_interval_max_neural_footprint;
    uint64_t ri_reserved[9];
};

static_assert(sizeof(struct rusage_info_v6) == 464, "rusage_info_v6 is 464 bytes");
