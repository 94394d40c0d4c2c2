// compile: no visible @interface for 'NSAlert' declares the selector 'addButtonWithTitel:'

#import <AppKit/AppKit.h>

NSButton* addButton(NSAlert* alert);

NSButton* addButton(NSAlert* alert) {
#if FAULT
    return [alert addButtonWithTitel:@"Quit"];
#else
    return [alert addButtonWithTitle:@"Quit"];
#endif
}
