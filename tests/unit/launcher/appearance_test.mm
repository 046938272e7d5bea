#include "launcher/shell/appearance.h"

#include <gtest/gtest.h>

#import <AppKit/AppKit.h>
#include <objc/runtime.h>

// An application that takes an appearance, as those of newer systems do, and keeps it.
@interface AppearanceTaker : NSObject {
 @public
  id appearance;
  int calls;
}
- (void)setAppearance:(id)chosen;
@end

@implementation AppearanceTaker
- (void)setAppearance:(id)chosen {
  [appearance release];
  appearance = [chosen retain];
  ++calls;
}
@end

// Stands in for the platform's class of appearances, whether there is one or not. It knows two.
@interface StandInAppearance : NSObject {
  NSString* name;
}
+ (id)appearanceNamed:(NSString*)wanted;
- (NSString*)name;
@end

@implementation StandInAppearance

+ (id)appearanceNamed:(NSString*)wanted {
  if (![wanted isEqual:@"NSAppearanceNameAqua"] && ![wanted isEqual:@"NSAppearanceNameDarkAqua"]) {
    return nil;
  }
  StandInAppearance* appearance = [[[StandInAppearance alloc] init] autorelease];
  appearance->name = [wanted copy];
  return appearance;
}

- (NSString*)name {
  return name;
}

@end

static NSDictionary* bundlesInfo = nil;

static NSDictionary* infoOfTest(id, SEL) { return bundlesInfo; }

static void standIn() {
  Class platforms = NSClassFromString(@"NSAppearance");
  if (platforms == Nil) {
    objc_registerClassPair(objc_allocateClassPair([StandInAppearance class], "NSAppearance", 0));
    return;
  }
  Method own = class_getClassMethod([StandInAppearance class], @selector(appearanceNamed:));
  method_setImplementation(class_getClassMethod(platforms, @selector(appearanceNamed:)),
                           method_getImplementation(own));
}

class Appearance : public testing::Test {
 protected:
  Appearance() {
    pool_ = [[NSAutoreleasePool alloc] init];
    standIn();
    application_ = [[AppearanceTaker alloc] init];
    NSApp = reinterpret_cast<NSApplication*>(application_);
  }

  ~Appearance() override {
    NSApp = nil;
    [pool_ release];
  }

  std::string chosen() const {
    return application_->calls == 0 ? "(none)" : [[application_->appearance name] UTF8String];
  }

  void setInBundle(id value) {
    bundlesInfo =
        [[NSDictionary alloc] initWithObjectsAndKeys:value, @"NSRequiresAquaSystemAppearance", nil];
    method_setImplementation(class_getInstanceMethod([NSBundle class], @selector(infoDictionary)),
                             (IMP)infoOfTest);
  }

  NSAutoreleasePool* pool_;
  AppearanceTaker* application_;
};

TEST_F(Appearance, IsLightUnlessSomethingElseIsAskedFor) {
  setApplicationAppearance(nullptr);
  EXPECT_EQ("NSAppearanceNameAqua", chosen());
}

TEST_F(Appearance, IsTheOneThatIsNamed) {
  setApplicationAppearance("NSAppearanceNameDarkAqua");
  EXPECT_EQ("NSAppearanceNameDarkAqua", chosen());
}

TEST_F(Appearance, OfAnUnknownNameIsLight) {
  setApplicationAppearance("NSAppearanceNameOfNoOne");
  EXPECT_EQ("NSAppearanceNameAqua", chosen());
}

TEST_F(Appearance, OfTheSystemIsLeftToTheSystem) {
  setApplicationAppearance("system");
  EXPECT_EQ("(none)", chosen());
}

TEST_F(Appearance, ThatTheBundleHasDecidedIsLeftToIt) {
  setInBundle([NSNumber numberWithBool:NO]);
  setApplicationAppearance(nullptr);
  EXPECT_EQ("(none)", chosen());
}

TEST_F(Appearance, ThatIsAskedForGoesBeforeTheBundles) {
  setInBundle([NSNumber numberWithBool:YES]);
  setApplicationAppearance("NSAppearanceNameDarkAqua");
  EXPECT_EQ("NSAppearanceNameDarkAqua", chosen());
}

TEST_F(Appearance, OfAnApplicationThatKnowsNoneIsLeftAlone) {
  NSApp = reinterpret_cast<NSApplication*>([[[NSObject alloc] init] autorelease]);
  setApplicationAppearance("NSAppearanceNameDarkAqua");
  EXPECT_EQ("(none)", chosen());
}
