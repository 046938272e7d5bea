#ifndef QUORVANE_EXTRACTOR_RUN_WINDOW_USE_H
#define QUORVANE_EXTRACTOR_RUN_WINDOW_USE_H

// What a run does with the window system.
enum class WindowUse {
  Open,       // creates the application object and shows windows
  GoWithout,  // would show windows, and goes on without them
  None,       // shows nothing, and asks nothing of the window system
  Refuse,     // cannot go on without a window system
};

// Chooses for a run that is `isQuiet` (silent or elevated) or not. Only for one that is not is
// `isAvailable` asked whether a window system can be reached; `isRequired` says whether such a run
// has to have one. Logs nothing.
[[nodiscard]] WindowUse chooseWindowUse(bool isQuiet, bool (*isAvailable)(), bool isRequired);

#endif
