#include "platform/Foundation_mac.h"

namespace orvane::platform {

NSString* toNSString(std::string_view text) {
    NSString* const converted = [[NSString alloc] initWithBytes:text.data()
                                                         length:text.size()
                                                       encoding:NSUTF8StringEncoding];
    return converted == nil ? @"" : converted;
}

std::string fromNSString(NSString* text) {
    const char* const utf8 = text.UTF8String;
    return utf8 == nullptr ? std::string() : std::string(utf8);
}

std::vector<std::string> fromNSArray(NSArray<NSString*>* texts) {
    std::vector<std::string> converted;
    for (NSString* text in texts) {
        converted.push_back(fromNSString(text));
    }
    return converted;
}

NSArray<NSString*>* toNSArray(const std::vector<std::string>& texts) {
    NSMutableArray<NSString*>* const converted = [NSMutableArray array];
    for (const std::string& text : texts) {
        [converted addObject:toNSString(text)];
    }
    return converted;
}

Error fromNSError(NSError* error) {
    return {fromNSString(error.domain), error.code, fromNSString(error.localizedDescription),
            fromNSString(error.description)};
}

Error fromNSException(NSException* exception) {
    return {fromNSString(exception.name), 0, fromNSString(exception.reason),
            fromNSString(exception.description)};
}

} // namespace orvane::platform
