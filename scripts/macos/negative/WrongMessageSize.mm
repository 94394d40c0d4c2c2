// compile: static assertion failed due to requirement 'sizeof(Message) == 4132'

#include <mach/mach.h>

struct Message {
    mach_msg_header_t header;
    int type;
#if FAULT
    char text[4096 + 1];
#else
    char text[4096];
#endif
    mach_msg_trailer_t trailer;
};

static_assert(sizeof(Message) == 4132);
