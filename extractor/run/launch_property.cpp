#include "extractor/run/launch_property.h"

#include "extractor/run/run.h"
#include "launch/launch_properties.h"

static void requireRoom(const ExtractorRun& run, const char* key, const char* value) {
  if (!propertyFits(run.launchProperties, LAUNCH_PROPERTIES_SIZE, key, value)) {
    failRun(Failure::BundleUnusable,
            "[Extractor] The launch properties do not fit their %d bytes: %.200s\n",
            LAUNCH_PROPERTIES_SIZE, key);
  }
}

void addStaticLaunchProperty(ExtractorRun& run, const char* key, const char* value) {
  requireRoom(run, key, value);
  addStaticProperty(run.launchProperties, key, value);
}

void addDynamicLaunchProperty(ExtractorRun& run, const char* key, const char* value) {
  requireRoom(run, key, value);
  addDynamicProperty(run.launchProperties, key, value);
}
