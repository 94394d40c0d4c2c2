// compile: assigning to 'NSAlertStyle' from incompatible type 'NSApplicationTerminateReply'

#import <AppKit/AppKit.h>

void warn(NSAlert* alert);

void warn(NSAlert* alert) {
#if FAULT
    alert.alertStyle = NSTerminateNow;
#else
    alert.alertStyle = NSAlertStyleWarning;
#endif
}
