// compile: assignment to readonly property

#import <Foundation/Foundation.h>

void setUrl(NSMutableURLRequest* request, NSURLRequest* other, NSURL* url);

void setUrl(NSMutableURLRequest* request, NSURLRequest* other, NSURL* url) {
    request.URL = other.URL;
#if FAULT
    other.URL = url;
#else
    request.URL = url;
#endif
}
