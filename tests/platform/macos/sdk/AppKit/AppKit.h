// Declarations only, with the signatures and values of Apple's macOS 13 SDK, for the AppKit calls
// our Objective-C++ makes. Nothing here is ever linked.
#pragma once

#import <Foundation/Foundation.h>

#define APPKIT_EXTERN extern "C"

NS_ASSUME_NONNULL_BEGIN

@class NSWindow;
@class NSScreen;

typedef NSString* NSColorSpaceName;
APPKIT_EXTERN NSColorSpaceName NSDeviceRGBColorSpace;

typedef CGFloat NSFontWeight;
APPKIT_EXTERN const NSFontWeight NSFontWeightRegular API_AVAILABLE(macos(10.11));

APPKIT_EXTERN NSAttributedStringKey NSFontAttributeName;
APPKIT_EXTERN NSAttributedStringKey NSForegroundColorAttributeName;

typedef NS_ENUM(NSUInteger, NSCompositingOperation) {
    NSCompositingOperationCopy API_AVAILABLE(macos(10.12)) = 1,
};

typedef NS_OPTIONS(NSUInteger, NSBitmapFormat) {
    NSBitmapFormatAlphaNonpremultiplied API_AVAILABLE(macos(10.12)) = 1 << 1,
};

typedef NS_OPTIONS(unsigned long long, NSEventMask) {
    NSEventMaskLeftMouseUp = 1ULL << 2,
    NSEventMaskRightMouseUp = 1ULL << 4,
};

typedef NS_ENUM(NSUInteger, NSCellImagePosition) {
    NSImageOnly = 1,
    NSImageLeft = 2,
};

// Left is 0 on every Mac; the other values differ between Intel and Apple silicon.
typedef NS_ENUM(NSInteger, NSTextAlignment) {
    NSTextAlignmentLeft = 0,
};

typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
    NSApplicationActivationPolicyRegular = 0,
    NSApplicationActivationPolicyAccessory = 1,
};

typedef NS_ENUM(NSUInteger, NSImageInterpolation) {
    NSImageInterpolationHigh = 3,
};

static const CGFloat NSVariableStatusItemLength = -1;

@interface NSColor : NSObject <NSCopying>
@property(class, strong, readonly) NSColor* systemYellowColor API_AVAILABLE(macos(10.10));
@end

@interface NSFont : NSObject <NSCopying>
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)fontSize
                                    weight:(NSFontWeight)weight API_AVAILABLE(macos(10.11));
+ (NSFont*)menuBarFontOfSize:(CGFloat)fontSize;
@property(readonly) CGFloat pointSize;
@end

@interface NSImageRep : NSObject <NSCopying>
@property NSSize size;
@property NSInteger pixelsWide;
@property NSInteger pixelsHigh;
@end

@interface NSBitmapImageRep : NSImageRep
- (nullable instancetype)initWithBitmapDataPlanes:(unsigned char* _Nullable* _Nullable)planes
                                       pixelsWide:(NSInteger)width
                                       pixelsHigh:(NSInteger)height
                                    bitsPerSample:(NSInteger)bps
                                  samplesPerPixel:(NSInteger)spp
                                         hasAlpha:(BOOL)alpha
                                         isPlanar:(BOOL)isPlanar
                                   colorSpaceName:(NSColorSpaceName)colorSpaceName
                                     bitmapFormat:(NSBitmapFormat)bitmapFormat
                                      bytesPerRow:(NSInteger)rBytes
                                     bitsPerPixel:(NSInteger)pBits;
@property(nullable, readonly) unsigned char* bitmapData NS_RETURNS_INNER_POINTER;
@property(readonly) NSInteger bytesPerRow;
@end

@interface NSImage : NSObject <NSCopying>
- (instancetype)initWithSize:(NSSize)size;
- (void)addRepresentation:(NSImageRep*)imageRep;
@property NSSize size;
// The SDK's property is named after a C++ keyword; Objective-C++ reaches it through these.
- (void)setTemplate:(BOOL)isTemplate;
- (void)drawInRect:(NSRect)rect
          fromRect:(NSRect)fromRect
         operation:(NSCompositingOperation)op
          fraction:(CGFloat)delta;
@end

@interface NSGraphicsContext : NSObject
+ (nullable NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmapRep;
@property(class, nullable, strong) NSGraphicsContext* currentContext;
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
- (void)flushGraphics;
@property NSImageInterpolation imageInterpolation;
@end

@interface NSResponder : NSObject
@end

@interface NSView : NSResponder
@property NSRect bounds;
@property(nullable, readonly, unsafe_unretained) NSWindow* window;
- (NSRect)convertRect:(NSRect)rect toView:(nullable NSView*)view;
@property(readonly) NSSize intrinsicContentSize;
@property(nullable, copy) NSString* accessibilityLabel;
@end

@interface NSControl : NSView
@property(nullable, weak) id target;
@property(nullable) SEL action;
- (NSInteger)sendActionOn:(NSEventMask)mask;
@property(nullable, strong) NSFont* font;
@property NSTextAlignment alignment;
@end

@interface NSButton : NSControl
@property(copy) NSString* title;
@property(copy) NSAttributedString* attributedTitle;
@property(nullable, strong) NSImage* image;
@property NSCellImagePosition imagePosition;
@end

API_AVAILABLE(macos(10.10)) @interface NSStatusBarButton : NSButton
@end

@interface NSWindow : NSResponder
- (NSRect)convertRectToScreen:(NSRect)rect;
@property(nullable, readonly, strong) NSScreen* screen;
@end

@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(readonly) NSRect frame;
@end

@class NSStatusItem;

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

@interface NSStatusItem : NSObject
@property CGFloat length;
@property(nullable, readonly, strong) NSStatusBarButton* button API_AVAILABLE(macos(10.10));
@end

@interface NSApplication : NSResponder
@property(class, readonly, strong) __kindof NSApplication* sharedApplication;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
- (void)activateIgnoringOtherApps:(BOOL)flag
    API_DEPRECATED("This method will be deprecated in a future release. Use NSApp.activate "
                   "instead.",
                   macos(10.0, 14.0));
@end

APPKIT_EXTERN __kindof NSApplication* _Null_unspecified NSApp;

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
- (NSImage*)iconForFile:(NSString*)fullPath;
- (BOOL)openURL:(NSURL*)url;
@end

API_AVAILABLE(macos(10.6)) @interface NSRunningApplication : NSObject
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid;
@property(nullable, readonly, strong) NSImage* icon;
@property(nullable, readonly, copy) NSURL* bundleURL;
@property(nullable, readonly, copy) NSURL* executableURL;
@end

NS_ASSUME_NONNULL_END
