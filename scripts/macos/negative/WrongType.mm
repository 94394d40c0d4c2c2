// compile: incompatible pointer types assigning to 'NSString * _Nonnull' from 'NSColor *'

#import <AppKit/AppKit.h>

void fill(NSTextField* field, NSColor* color);

void fill(NSTextField* field, NSColor* color) {
#if FAULT
    field.stringValue = color;
#else
    field.textColor = color;
#endif
}
