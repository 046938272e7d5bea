#ifndef QUORVANE_LAUNCHER_INSTALLATION_TAIL_READER_H
#define QUORVANE_LAUNCHER_INSTALLATION_TAIL_READER_H

#include <cstdio>

// The Tail record: the application's packaging settings, which the packager puts behind the
// executable or into the bundle's Resources folder. From the first byte after the marker (or from
// the first byte of the file Resources/Tail) it is these fields, in the field encoding, in this
// order:
//
//   1 App Name    2 App Version           3 JRE Version           4 GU Version
//   5 Min Splash MS                       6 Signature Public Key  7 Can Override Splash
//   8 Install Type                        9 Silent Parameter     10 Required Java Version
//  11 Update URL
//
// and then, for the Extractor, the archives that the record carries. The Launcher reads ten fields
// only and calls the tenth "Update URL".

// Read limits of the fields in bytes: of all but two, of the public key, and of the update URL.
constexpr int TAIL_FIELD_LIMIT = 1024;
constexpr int TAIL_PUBLIC_KEY_LIMIT = 8192;
constexpr int TAIL_UPDATE_URL_LIMIT = 5000;

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

// Reads fields 1 to 9 into their globals. `stream` stands at the first field and is left behind the
// ninth. Fields that are missing at the end of the stream read as the empty text. Main thread.
void readCommonTailFields(FILE* stream);

// Reads the Launcher's ten fields into the globals and logs each. The record is looked for behind
// the marker in the file `executablePath`, opened by the path as given, and else in the file
// ../Resources/Tail beside it. When neither can be opened the failure is logged and the process
// ends with EXIT_STATUS_FAILURE. `marker` must be set. Main thread.
void extractTail(const char* executablePath);

#endif
