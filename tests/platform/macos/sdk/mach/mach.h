// Declaration-only mirror of the parts of <mach/mach.h> the bindings use.
#pragma once

extern "C" {

typedef unsigned int natural_t;
typedef natural_t mach_port_name_t;
typedef mach_port_name_t mach_port_t;
typedef mach_port_t task_t;
typedef mach_port_t task_port_t;
typedef int kern_return_t;

#define KERN_SUCCESS 0

extern mach_port_t mach_task_self_;
#define mach_task_self() mach_task_self_

}  // extern "C"
