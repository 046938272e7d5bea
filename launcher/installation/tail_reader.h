#ifndef QUORVANE_LAUNCHER_INSTALLATION_TAIL_READER_H
#define QUORVANE_LAUNCHER_INSTALLATION_TAIL_READER_H

#include <cstdio>

// The Tail record: the application's packaging settings, which the packager appends to the
// executable or into the bundle's Resources folder. From the first byte after the marker (or from
// the first byte of the file Resources/Tail) it is the fields of formats/tail_fields.h, in the
// field encoding, and then, for the Extractor, the archives that the record carries.

// The field values. Null until a record was read; kept for the life of the process.
extern char* app_name;
extern char* app_version;
extern char* jre_version;
extern char* gu_version;
extern char* min_splash;
extern char* derPublicKeyHex;
extern char* can_override_splash;
extern char* install_type;
extern char* silent_parameter;
extern char* update_url;

// Reads fields 1 to 9 into their globals. `stream` is at the first field and is left after the
// ninth. Fields missing at the end of the stream read as the empty text. Main thread.
void readCommonTailFields(FILE* stream);

// Reads the Launcher's ten fields into the globals and logs each. The record is searched for after
// the marker in the file `executablePath`, opened by the given path, and otherwise read from the
// file ../Resources/Tail beside it. If neither can be opened the failure is logged and the process
// ends with EXIT_STATUS_FAILURE. `marker` must be set. Main thread.
void extractTail(const char* executablePath);

// Logs the Tail value `value`, which may be null, as `label`; only the first 99 characters of a
// longer one. Any thread.
void printTruncated(const char* label, const char* value);

#endif
