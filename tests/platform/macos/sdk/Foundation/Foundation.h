// Declarations only, with the signatures and values of Apple's macOS 13 SDK, for the Foundation
// calls our Objective-C++ makes: lets clang type-check those files on a machine without the SDK.
// Nothing here is ever linked.
#pragma once

#include <os/availability.h>
#include <stdint.h>
#include <sys/types.h>

#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_ENUM(type, name) \
    enum name : type name;  \
    enum name : type
// As the SDK has it for C++: the options type is the integer, so that options combine.
#define NS_OPTIONS(type, name) \
    type name;                 \
    enum : type
#define FOUNDATION_EXPORT extern "C"
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double CGFloat;
// As <objc/objc.h> has it: bool on Apple silicon, signed char on Intel.
#if defined(__arm64__) || defined(__aarch64__)
#define OBJC_BOOL_IS_BOOL 1
typedef bool BOOL;
#else
#define OBJC_BOOL_IS_BOOL 0
typedef signed char BOOL;
#endif
#define nil nullptr
#define YES __objc_yes
#define NO __objc_no

struct CGPoint {
    CGFloat x;
    CGFloat y;
};
struct CGSize {
    CGFloat width;
    CGFloat height;
};
struct CGRect {
    CGPoint origin;
    CGSize size;
};
typedef struct CGPoint CGPoint;
typedef struct CGSize CGSize;
typedef struct CGRect CGRect;
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;
FOUNDATION_EXPORT const NSRect NSZeroRect;
static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) {
    NSRect r;
    r.origin.x = x;
    r.origin.y = y;
    r.size.width = w;
    r.size.height = h;
    return r;
}
static inline NSSize NSMakeSize(CGFloat w, CGFloat h) {
    NSSize s;
    s.width = w;
    s.height = h;
    return s;
}

NS_ASSUME_NONNULL_BEGIN

@class NSString;

@protocol NSObject
- (BOOL)isKindOfClass:(Class)aClass;
@end

@protocol NSCopying
- (id)copyWithZone:(nullable void*)zone;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (instancetype)new;
+ (Class)class;
- (instancetype)init;
- (id)copy;
@end

@interface NSString : NSObject <NSCopying>
+ (nullable instancetype)stringWithUTF8String:(const char*)nullTerminatedCString;
@property(nullable, readonly) const char* UTF8String NS_RETURNS_INNER_POINTER;
@property(readonly) NSUInteger length;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying>
@property(readonly) NSUInteger count;
@property(nullable, nonatomic, readonly) ObjectType firstObject;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying>
// What dictionary literals call.
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)cnt;
@end

@interface NSURL : NSObject <NSCopying>
+ (nullable instancetype)URLWithString:(NSString*)URLString;
+ (NSURL*)fileURLWithPath:(NSString*)path isDirectory:(BOOL)isDir API_AVAILABLE(macos(10.5));
@property(nullable, readonly, copy) NSString* path;
@end

@interface NSError : NSObject <NSCopying>
@property(readonly, copy) NSString* domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSString* localizedDescription;
@end

typedef NSString* NSAttributedStringKey;

@interface NSAttributedString : NSObject <NSCopying>
- (instancetype)initWithString:(NSString*)str
                    attributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attrs;
@property(readonly, copy) NSString* string;
@end

@interface NSBundle : NSObject
+ (nullable instancetype)bundleWithURL:(NSURL*)url API_AVAILABLE(macos(10.6));
@property(nullable, readonly, copy) NSString* bundleIdentifier;
- (nullable id)objectForInfoDictionaryKey:(NSString*)key;
@end

NS_ASSUME_NONNULL_END
