#ifndef QUORVANE_PLATFORM_GNUSTEP_CREATE_APPLICATION_H
#define QUORVANE_PLATFORM_GNUSTEP_CREATE_APPLICATION_H

#ifdef __cplusplus
extern "C" {
#endif

// Creates the shared application object. Returns false where the window system refuses; no
// application object is left then. Main thread.
int createSharedApplication(void);

#ifdef __cplusplus
}
#endif

#endif
