#ifndef COCOA_COCOA_H
#define COCOA_COCOA_H

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

#endif
