#ifndef APPKIT_NSMENU_H
#define APPKIT_NSMENU_H

#import <Foundation/Foundation.h>

@class NSMenuItem;

SDK_API @interface NSMenu : NSObject
- (instancetype)initWithTitle:(NSString*)title SDK_API;
- (NSMenuItem*)addItemWithTitle:(NSString*)title
                         action:(SEL)action
                  keyEquivalent:(NSString*)key SDK_API;
- (void)addItem:(NSMenuItem*)item SDK_API;
- (void)setSubmenu:(NSMenu*)menu forItem:(NSMenuItem*)item SDK_API;
- (NSInteger)numberOfItems SDK_API;
- (NSMenuItem*)itemAtIndex:(NSInteger)index SDK_API;
@end

SDK_API @interface NSMenuItem : NSObject
+ (NSMenuItem*)separatorItem SDK_API;
- (BOOL)isSeparatorItem SDK_API;
- (NSMenu*)submenu SDK_API;
- (NSString*)title SDK_API;
- (void)setTitle:(NSString*)title SDK_API;
@end

#endif
