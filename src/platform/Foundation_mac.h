#pragma once

#import <Foundation/Foundation.h>

#include "platform/Error.h"

#include <string>
#include <string_view>
#include <vector>

/// Between Foundation's values and the standard library's, for the macOS implementations.
namespace orvane::platform {

/// Text that is not valid UTF-8 becomes the empty text.
NSString* toNSString(std::string_view text);

std::string fromNSString(NSString* text); ///< nil becomes the empty text
std::vector<std::string> fromNSArray(NSArray<NSString*>* texts);
NSArray<NSString*>* toNSArray(const std::vector<std::string>& texts);

/// Domain, code and both descriptions as the system renders them.
Error fromNSError(NSError* error);

/// For what the system raises instead of answering with an error: its name is the domain, its reason the
/// description.
Error fromNSException(NSException* exception);

} // namespace orvane::platform
