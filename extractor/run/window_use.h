#ifndef QUORVANE_EXTRACTOR_RUN_WINDOW_USE_H
#define QUORVANE_EXTRACTOR_RUN_WINDOW_USE_H

// A run's use of the window system.
enum class WindowUse {
  Open,       // creates the application object and shows windows
  GoWithout,  // would show windows, and goes on without them
  None,       // shows nothing, and asks nothing of the window system
  Refuse,     // cannot go on without a window system
};

// Chooses the use for a run that is `isQuiet` (silent or elevated) or not. `isAvailable` is called
// to check for a window system only if the run is not quiet; `isRequired` says whether such a run
// must have one. Logs nothing.
[[nodiscard]] WindowUse chooseWindowUse(bool isQuiet, bool (*isAvailable)(), bool isRequired);

#endif
