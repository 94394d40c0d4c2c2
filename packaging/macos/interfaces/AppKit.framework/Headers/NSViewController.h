#pragma once

#include <AppKit/NSResponder.h>

NS_ASSUME_NONNULL_BEGIN

@class NSBundle;
@class NSView;

API_AVAILABLE(macos(10.5))
@interface NSViewController : NSResponder

- (instancetype)initWithNibName:(nullable NSString*)nibNameOrNil bundle:(nullable NSBundle*)nibBundleOrNil;
- (nullable instancetype)initWithCoder:(NSCoder*)coder;

@property(nullable, copy) NSString* title;
@property(strong) NSView* view;

- (void)loadView;
- (void)viewDidLoad API_AVAILABLE(macos(10.10));
- (void)viewWillAppear API_AVAILABLE(macos(10.10));
- (void)viewDidAppear API_AVAILABLE(macos(10.10));

@end

NS_ASSUME_NONNULL_END
