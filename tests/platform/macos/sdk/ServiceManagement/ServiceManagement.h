// Declarations only, with the signatures and values of Apple's macOS 13 SDK, for the
// ServiceManagement calls our Objective-C++ makes. Nothing here is ever linked.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSInteger SMAppServiceStatus API_AVAILABLE(macos(13.0));

API_AVAILABLE(macos(13.0)) @interface SMAppService : NSObject
@property(class, readonly) SMAppService* mainAppService;
@property(readonly) SMAppServiceStatus status;
- (BOOL)registerAndReturnError:(NSError* _Nullable*)error API_AVAILABLE(macos(13.0));
- (BOOL)unregisterAndReturnError:(NSError* _Nullable*)error API_AVAILABLE(macos(13.0));
@end

NS_ASSUME_NONNULL_END
