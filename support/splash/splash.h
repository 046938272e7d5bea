#ifndef QUORVANE_SUPPORT_SPLASH_SPLASH_H
#define QUORVANE_SUPPORT_SPLASH_SPLASH_H

// The splash: a borderless, floating, centred window with the application's image and, under it, a
// thin progress bar that is hidden, filled to a percentage, or indeterminate (a moving stripe).
// There is one per process: init() first, then configureSplash(), then showSplash(); setProgress()
// and hideProgress() any number of times; hideSplash() or cleanup() at the end.
//
// The main thread owns the window: every function here is called on it. If no window system is
// available, the first call says so in one line on standard output, and all functions do nothing
// else; callers need not know.

// Sizes of the splash image in points; 300 each until an image is configured, 0 after an unreadable
// one.
extern int image_width;
extern int image_height;

// The bar's state: -100 hidden, -1 indeterminate, 0 to 100 filled to that percentage.
extern int progressPercent;

// The phase of the indeterminate bar, 0 to `maxFrames`, and its last value.
extern int currentFrame;
extern int maxFrames;

// Makes every function here do nothing, silently: for a run that shows nothing and does not even
// check for a window system. Before init().
void goWithoutSplash();

// Creates the window, its view and the bar's images. Logs two lines. Once.
void init();

// Reads the splash image from the file `imagePath` and gives the window its size. An unreadable
// file counts as an empty image; nothing is reported.
void configureSplash(const char* imagePath);

// Brings the window on screen, centred, above ordinary windows.
void showSplash();

// Takes the window off the screen; showSplash() brings it back.
void hideSplash();

// Sets the bar's state. A value above 100 counts as 100, one below -100 as 0. Leaving the hidden
// state makes the window taller by the bar, returning to it makes it smaller again. Entering the
// indeterminate state starts a thread that requests a redraw every 0.03 s; leaving it ends that
// thread.
void setProgress(int percent);

// Hides the bar and makes the window smaller again. Unlike setProgress(-100) it does not end a
// running redraw thread.
void hideProgress();

// Draws what has changed and lets the window respond to the window system, without waiting. While
// the window is on screen keepAlive() does this, so that the stripe moves during long work; a call
// less than 0.03 s after the previous one costs only a clock reading. Does nothing on other
// threads.
void refreshSplash();

// Gives the window a size in points; its centre stays. Logs the size.
void setFrameSize(int width, int height);

// Gives the window the size of the image with its margins, without or with room for the bar.
void setFrameSizeWithoutBar();
void setFrameSizeWithBar();

// Returns or sets the margin around the image in points, initially 0. It takes effect at the next
// change of size.
int getSplashBuffer();
void setSplashBuffer(int points);

// Ends the redraw thread and closes the window. The splash cannot be used afterwards.
void cleanup();

#endif
