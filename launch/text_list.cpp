#include "launch/text_list.h"

#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

static char* keepText(TextList* list, const char* text) {
  list->texts.emplace_back(text);
  return list->texts.back().data();
}

int textCount(const TextList& list) {
  return static_cast<int>(list.entries.size()) - 1;
}

static int roomLeft(const TextList& list) {
  return list.room - textCount(list);
}

bool hasRoom(const TextList& list, long count) {
  return count >= 0 && count <= roomLeft(list);
}

void requireRoom(const TextList& list, long count) {
  if (!hasRoom(list, count)) {
    logError("Unable to launch: %ld more entries do not fit the %s, which has room for %d\n", count,
             list.name, roomLeft(list));
    failProcess(EXIT_STATUS_FAILURE, Failure::InstallationDamaged);
  }
}

void appendText(TextList* list, const char* text) {
  requireRoom(*list, 1);
  list->entries.back() = text == nullptr ? nullptr : keepText(list, text);
  list->entries.push_back(nullptr);
}

void fillSlot(TextList* list, int index, const char* text) {
  list->entries[static_cast<size_t>(index)] = keepText(list, text);
}
