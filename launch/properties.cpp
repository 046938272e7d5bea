#include <cstring>

#include "launch/launch_properties.h"
#include "launch/launch_steps.h"
#include "launcher/shell/url_events.h"
#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

static void requireProperty(const Launch& launch, const char* key, const char* value) {
  if (!propertyFits(launch.properties.data(), launch.properties.size(), key, value)) {
    logError("Unable to launch: the property %s does not fit the launch properties\n", key);
    failProcess(EXIT_STATUS_FAILURE, Failure::BundleUnusable);
  }
}

void addStatic(Launch* launch, const char* key, const char* value) {
  requireProperty(*launch, key, value);
  addStaticProperty(launch->properties.data(), key, value);
}

void addDynamic(Launch* launch, const char* key, const char* value) {
  requireProperty(*launch, key, value);
  addDynamicProperty(launch->properties.data(), key, value);
}

static void copyRequestedProperties(Launch* launch) {
  const size_t length = static_cast<size_t>(propsLen(launch->request.properties));
  launch->properties.assign(length + ADDED_PROPERTIES_SIZE, '\0');
  memcpy(launch->properties.data(), launch->request.properties, length + 2);
}

void createProperties(Launch* launch) {
  const LaunchRequest& request = launch->request;
  logMessage("[Extractor] Creating launch properties\n");
  copyRequestedProperties(launch);
  addStatic(launch, "update_url", request.updateUrl);
  if (strcmp(request.updateUrl, "D") == 0 && request.dynamicUpdateUrl != nullptr) {
    addDynamic(launch, "update_url", request.dynamicUpdateUrl);
  }
  addStatic(launch, "app_dir", launch->appFolder);
  addStatic(launch, "jre_name", request.jre);
  addStatic(launch, "launched_from_dynprops", request.launchedFromDynprops);
  if (const char* url = getRequestedURL()) {
    logMessage("[Extractor] Setting URL request dynamic property to '%s'\n", url);
    addDynamic(launch, "url_req", url);
  }
}
