#ifndef QUORVANE_LAUNCH_TEXT_LIST_H
#define QUORVANE_LAUNCH_TEXT_LIST_H

#include <deque>
#include <string>
#include <vector>

// A list of texts with a fixed capacity, in the form that starting a process or a JVM takes. It
// owns its texts. Exceeding the capacity ends the process with status 1 after one logged error line
// that names the list. One thread.
struct TextList {
  TextList(const char* listName, int listRoom) : name(listName), room(listRoom) {}
  TextList(const TextList&) = delete;
  TextList& operator=(const TextList&) = delete;

  const char* name;  // how the error line calls the list
  int room;          // number of entries that fit
  std::deque<std::string> texts;
  std::vector<char*> entries{nullptr};  // null for an empty slot, and always a null at the end
};

// Returns the number of entries, empty slots included.
int textCount(const TextList& list);

// Returns whether `count` more entries fit; a negative count never fits.
[[nodiscard]] bool hasRoom(const TextList& list, long count);

// Ends the process as described above unless `count` more entries fit; a negative count never fits.
void requireRoom(const TextList& list, long count);

// Appends a copy of `text`, or an empty slot if it is null.
void appendText(TextList* list, const char* text);

// Puts a copy of `text` into the existing slot `index`.
void fillSlot(TextList* list, int index, const char* text);

#endif
