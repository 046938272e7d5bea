// The functions of the Objective-C++ files, as fuzz targets see them: they do nothing, or what
// plain C++ can do. A new one that the core calls needs its line here before the fuzz targets link
// again.

#include <cstdio>

#include "launcher/jvm/bundle_loader.h"
#include "launcher/shell/app_shell.h"
#include "launcher/shell/event_loop.h"
#include "launcher/shell/url_events.h"
#include "support/events/event_wait.h"
#include "support/failure/failure_alert.h"
#include "support/files/move_item.h"
#include "support/log/system_log.h"
#include "support/network/downloader.h"
#include "support/splash/splash.h"

void writeSystemLog(const char*) {}

void showFailureAlert(const FailureAlert&) {}

bool moveItem(const char* from, const char* to) {
  return rename(from, to) == 0;
}

void loadOSXBundle(const char*) {}

void presentApplication(const Presentation&) {}

void loadOSXUINib(const char*) {}

void prepareEventLoop() {}

void runEventLoopUntilEnded() {}

void endEventLoop() {}

bool waitForEventLoopToEnd() {
  return true;
}

void waitForEvent(double) {}

const char* getRequestedURL() {
  return nullptr;
}

int downloadFile(const char*, const char*) {
  return 1;
}

int downloadFile(const char*, const char*, int) {
  return 1;
}

void init() {}

void configureSplash(const char*) {}

void showSplash() {}

void hideSplash() {}

void setProgress(int) {}

void setSplashBuffer(int) {}

void cleanup() {}
