// compile: 'bootstrap_register' is deprecated: first deprecated in macOS 10.5

#include <servers/bootstrap.h>

kern_return_t publish(mach_port_t port, name_t name);

kern_return_t publish(mach_port_t port, name_t name) {
#if FAULT
    return bootstrap_register(bootstrap_port, name, port);
#else
    return bootstrap_look_up(bootstrap_port, name, &port);
#endif
}
