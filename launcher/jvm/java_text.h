#ifndef QUORVANE_LAUNCHER_JVM_JAVA_TEXT_H
#define QUORVANE_LAUNCHER_JVM_JAVA_TEXT_H

#include <string>

// Returns `text` as the Java Native Interface takes texts: characters of four bytes in UTF-8 become
// two surrogates of three bytes each. All other bytes stay as they are, even where they
// are not UTF-8. Any thread.
std::string javaText(const char* text);

#endif
