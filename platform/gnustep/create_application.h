#ifndef QUORVANE_PLATFORM_GNUSTEP_CREATE_APPLICATION_H
#define QUORVANE_PLATFORM_GNUSTEP_CREATE_APPLICATION_H

#ifdef __cplusplus
extern "C" {
#endif

// Creates the shared application object. Returns false, without leaving an application object, if
// the window system refuses. Main thread.
int createSharedApplication(void);

#ifdef __cplusplus
}
#endif

#endif
