#ifndef QUORVANE_PLATFORM_FILE_VIEWER_H
#define QUORVANE_PLATFORM_FILE_VIEWER_H

// Shows the file at `path` to the user in a desktop window that lists its folder: on macOS the file
// is selected in the Finder, elsewhere its folder is opened with xdg-open. Does not wait for the
// window. A failure is ignored. Logs nothing. Main thread.
void showInFileViewer(const char* path);

#endif
