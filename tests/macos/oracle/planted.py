"""Mistakes in the declarations that the comparison has to find, planted one at a time."""

from compare_declarations import compare_declarations
from declarations import declarations
from findings import Findings
from source_reader import SourceReader

# (framework, header, what is declared, what takes its place, how a note about it begins). Each is valid for
# a compiler.
MISTAKES = [
    ("AppKit", "NSGraphics", "NSCompositeSourceOver SDK_API = 2", "NSCompositeSourceOver SDK_API = 1"),
    ("AppKit", "NSGraphics", "NSBackingStoreBuffered SDK_API = 2", "NSBackingStoreBuffered SDK_API = 3"),
    ("AppKit", "NSGraphics", "NSBackingStoreType : NSUInteger", "NSBackingStoreType : int"),
    ("AppKit", "NSWindow", "typedef NSInteger NSWindowLevel", "typedef int NSWindowLevel"),
    ("AppKit", "NSWindow", "makeKeyAndOrderFront:", "makeKeyAndOrderToFront:"),
    ("AppKit", "NSWindow", "@interface NSWindow : NSResponder", "@interface NSWindow : NSObject"),
    ("AppKit", "NSMenu", "- (NSInteger)numberOfItems", "- (int)numberOfItems"),
    ("AppKit", "NSMenu", "+ (NSMenuItem*)separatorItem", "- (NSMenuItem*)separatorItem"),
    ("AppKit", "NSImage", "fraction:(CGFloat)", "fraction:(float)"),
    ("AppKit", "NSView", "NSViewHeightSizable SDK_API = 16", "NSViewHeightSizable SDK_API = 8"),
    ("CoreGraphics", "CGGeometry", "typedef double CGFloat", "typedef float CGFloat"),
    ("CoreGraphics", "CGGeometry", "  CGFloat width;\n  CGFloat height;",
     "  CGFloat height;\n  CGFloat width;"),
    ("CoreGraphics", "CGWindowLevel", "kCGFloatingWindowLevelKey SDK_API = 5",
     "kCGFloatingWindowLevelKey SDK_API = 3"),
    ("CoreFoundation", "CFBundle", "SDK_EXTERN Boolean", "SDK_EXTERN int"),
    ("Foundation", "NSURLError", "-1011", "-1012"),
    ("Foundation", "NSURLError", "NSURLErrorFailingURLStringErrorKey", "NSURLErrorFailingURLTextErrorKey"),
    ("Foundation", "NSURLDownload", "didReceiveDataOfLength:(NSUInteger)n", "didReceiveDataOfLength:(int)n"),
    ("Foundation", "NSURLDownload", "downloadDidFinish:", "downloadHasFinished:"),
    ("Foundation", "NSURLResponse", "- (long long)expectedContentLength", "- (int)expectedContentLength"),
    ("Foundation", "NSFileManager", "length:(NSUInteger)bytes", "length:(int)bytes"),
    ("Foundation", "NSThread", "- (BOOL)isCancelled", "- (int)isCancelled"),
    ("Foundation", "NSDate", "typedef double NSTimeInterval", "typedef float NSTimeInterval"),
    ("Foundation", "NSAppleEvents", "typedef FourCharCode AEKeyword", "typedef unsigned short AEKeyword"),
    ("Foundation", "NSString", "NSISOLatin1StringEncoding SDK_API = 5", "NSISOLatin1StringEncoding SDK_API = 4"),
    ("Foundation", "NSURLError", "SDK_EXTERN NSString* const NSURLErrorFailingURLStringErrorKey",
     "SDK_EXTERN NSString* const NSAlternateDescriptionAttributeName;\n"
     "SDK_EXTERN NSString* const NSURLErrorFailingURLStringErrorKey",
     "newer than the oldest system: constant NSAlternateDescriptionAttributeName"),
]


def missed(root, tools, arch, sdk, crates, expected):
    """The mistakes that the comparison does not find, and those that there is nothing to plant in."""
    for framework, header, right, wrong, *note in MISTAKES:
        path = root / f"platform/macos-sdk/Frameworks/{framework}.framework/Headers/{header}.h"
        text = path.read_text()
        if right not in text:
            yield f"{header}.h does not have '{right}'"
            continue
        reader = SourceReader(root, tools, arch, {path: text.replace(right, wrong)})
        findings = Findings()
        compare_declarations(declarations(reader), sdk, crates, arch, findings)
        new = [text for text in findings.notes - expected if text.startswith(tuple(note or [""]))]
        if not new and (note or not findings.mismatches):
            yield f"{header}.h: '{wrong}' instead of '{right}'"
