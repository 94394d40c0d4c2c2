#pragma once

#include <Availability.h>
#include <mach/mach.h>

/// The name server of the user's session, as far as the program and engines talk to it: a service is made
/// known under a name, and looked up by it. Answers are kernel codes, or those of the name server below.

#define BOOTSTRAP_MAX_NAME_LEN 128

#define BOOTSTRAP_SUCCESS 0
#define BOOTSTRAP_NOT_PRIVILEGED 1100
#define BOOTSTRAP_NAME_IN_USE 1101
#define BOOTSTRAP_UNKNOWN_SERVICE 1102
#define BOOTSTRAP_SERVICE_ACTIVE 1103

typedef char name_t[BOOTSTRAP_MAX_NAME_LEN];

__BEGIN_DECLS

kern_return_t bootstrap_register(mach_port_t bp, name_t service_name, mach_port_t sp)
    __API_DEPRECATED("no longer supported", macos(10.0, 10.5));

kern_return_t bootstrap_look_up(mach_port_t bp, const name_t service_name, mach_port_t* sp)
    __API_AVAILABLE(macos(10.0));

__END_DECLS
